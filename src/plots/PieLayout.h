#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "plots/Figure.h"
#include "plots/Rect.h"

namespace tarvex {

class Metrics;

// Where the slices of a pie stand. Angles count from the top, clockwise.
struct PieLayout {
  struct Piece {
    std::size_t slice;
    double from, to;
    double middle() const { return (from + to) / 2.0; }
  };
  struct LabelPlace {
    std::size_t piece;
    bool right;  // of the pie
    Rect box;    // of name and value; a longer name is shortened
  };

  Rect area;
  Rect body;  // below the heading
  bool heading = false;
  std::vector<Piece> pieces;  // none: the chart's own text stands in the middle of the body
  std::vector<LabelPlace> labels;
  double centreX = 0.0, centreY = 0.0, radius = 0.0;
  double labelRoom = 0.0;

  double x(double angle, double radii) const;
  double y(double angle, double radii) const;
  // Where the labels of a side begin, beyond the pie.
  double labelEdge(bool right, double gap) const;
  // The slice at a place.
  std::optional<std::size_t> sliceAt(double atX, double atY) const;

  static constexpr double kElbow = 1.08;  // where leader lines bend, in radii
};

PieLayout layOutChart(Metrics& metrics, const Rect& area, const PieChart& chart);

}  // namespace tarvex
