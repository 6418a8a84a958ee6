#pragma once

#include <cstddef>
#include <string>
#include <variant>
#include <vector>

#include "plots/BarLayout.h"
#include "plots/CobwebLayout.h"
#include "plots/LegendLayout.h"
#include "plots/PieLayout.h"
#include "plots/PlaneLayout.h"
#include "plots/Rect.h"

namespace tarvex {

struct Figure;

// Part of an axis that is to be seen instead of the whole.
struct VisibleRange {
  std::size_t chart = 0;
  std::size_t axis = 0;  // of a plane 0 for x and 1 for y, of bars 0, of a cobweb the number of the axis
  double lower = 0.0, upper = 0.0;
};

struct LayoutOptions {
  double width = 0.0, height = 0.0;        // of the page, in units of which 96 are an inch; 0: the figure's own
  std::vector<VisibleRange> visible = {};  // those that are no range, or of no axis, don't count
};

// A line of text above the charts.
struct TitlePlace {
  Rect box;
  bool sub = false;
};

using ChartLayout = std::variant<PlaneLayout, CobwebLayout, BarLayout, PieLayout>;

// Where everything of a figure stands, in units of the page: a value that nothing changes once it is made. It holds no
// data but what it took from them to place it.
struct FigureLayout {
  Rect page;
  double scale = 1.0;  // of texts, marks and gaps
  std::vector<TitlePlace> titles;
  LegendLayout legend;
  std::vector<ChartLayout> charts;  // as the figure's; none where there is no room
};

// Requires: a font (see hasFont).
FigureLayout layOut(const Figure& figure, const LayoutOptions& options = {});

}  // namespace tarvex
