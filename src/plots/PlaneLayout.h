#pragma once

#include <cstddef>
#include <vector>

#include "plots/AxisFrame.h"
#include "plots/AxisMap.h"
#include "plots/Figure.h"
#include "plots/Rect.h"
#include "plots/labelPlacement.h"

namespace tarvex {

// Where a chart with two axes stands.
struct PlaneLayout {
  // A point of a layer of labelled points that lies within the axes.
  struct LabelPlace {
    std::size_t layer, point;
    double x, y;  // of the mark's centre
    PlacedLabel label;
  };

  Rect area;
  Axis xAxis, yAxis;  // the chart's, over the range that is to be seen
  AxisFrame frame;    // with the plane
  AxisMap x, y;
  std::vector<LabelPlace> labels;
  std::vector<std::size_t> shown;  // of each layer of points: how many lie within the axes; 0 of other layers

  double markRadius = 0.0;  // of labelled points
};

// Requires: axes with finite limits.
PlaneLayout layOutChart(Metrics& metrics, const Rect& area, const XyChart& chart, Axis xAxis, Axis yAxis);

// The radius of single points; fewer are larger.
double pointRadius(std::size_t points, double scale);

}  // namespace tarvex
