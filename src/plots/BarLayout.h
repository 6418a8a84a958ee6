#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

#include "plots/AxisMap.h"
#include "plots/Figure.h"
#include "plots/Rect.h"
#include "plots/TextPen.h"
#include "plots/Ticks.h"

namespace tarvex {

class Metrics;

// Where the rows of a bar chart stand.
struct BarLayout {
  Rect area, plane;
  Axis axis;  // the chart's, over the range that is to be seen
  AxisMap values;
  double zero = 0.0;  // what can be seen of 0, a value
  std::vector<Tick> ticks;
  bool heading = false, title = false;
  bool valueTexts = false;  // beside the bars
  double rowHeight = 0.0, barHeight = 0.0, barPitch = 0.0;
  std::size_t series = 0, categories = 0;  // bars beside each other in a row, and rows
  TextStyle nameStyle, barStyle;
  std::size_t everyName = 1;  // one in so many is shown

  double middleOfRow(std::size_t category) const { return plane.y + rowHeight * (static_cast<double>(category) + 0.5); }
  double middleOfBar(std::size_t number, std::size_t category) const {
    return middleOfRow(category) - barPitch * static_cast<double>(series) / 2.0 +
           barPitch * (static_cast<double>(std::min(number, series - 1)) + 0.5);
  }
  // Empty across for a value that isn't finite.
  Rect barBox(std::size_t number, std::size_t category, const Bar& bar) const;
  Rect nameBox(std::size_t category, double gap) const;
};

// `visible`: what is to be seen of the axis; where lower isn't below upper, the whole.
BarLayout layOutChart(Metrics& metrics, const Rect& area, const BarChart& chart,
                      const std::pair<double, double>& visible);

}  // namespace tarvex
