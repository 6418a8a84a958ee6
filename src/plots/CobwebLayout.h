#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "plots/AxisMap.h"
#include "plots/Figure.h"
#include "plots/Rect.h"
#include "plots/TextPen.h"

namespace tarvex {

class Metrics;

// Where the axes of a cobweb stand.
struct CobwebLayout {
  // One row of texts, one of each axis: level where axes are far apart, shortened if need be, else upright; where even
  // these are closer than a line of text, only some are shown.
  struct TextRow {
    std::vector<std::string> texts;
    TextStyle style;
    bool upright = false;
    double top = 0.0, height = 0.0;
    double width = 0.0;     // of a box
    std::size_t every = 1;  // one in so many is shown

    Rect box(double x) const { return {x - width / 2.0, top, width, height}; }
  };
  struct AxisPlace {
    double x = 0.0;
    AxisMap map;                      // of the part that is to be seen; a constant stands in the middle
    double shift = 0.0, share = 1.0;  // from a run's position to its height: 0 at the foot of that part, 1 at its top
  };

  Rect area, plane;
  bool hasTexts = false;
  std::string unnamed;  // says so where not every axis has its name; stands at `unnamedTop`
  double unnamedTop = 0.0;
  TextRow names, uppers, lowers;
  std::vector<AxisPlace> axes;

  // Where a run meets an axis, from its position; not finite for one that isn't.
  double levelOf(std::size_t axis, float position) const {
    return plane.bottom() - (axes[axis].shift + axes[axis].share * position) * plane.height;
  }
  // The nearest axis that isn't further than `reach` from a place.
  std::optional<std::size_t> axisAt(double x, double y, double reach) const;
};

// `visible`: what is to be seen of each axis; where lower isn't below upper, the whole.
CobwebLayout layOutChart(Metrics& metrics, const Rect& area, const CobwebChart& chart,
                         const std::vector<std::pair<double, double>>& visible);

}  // namespace tarvex
