#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "plots/AxisMap.h"
#include "plots/FigureLayout.h"

namespace tarvex {

// Which part of its axes a chart shows. Each operation answers whether that has changed; the layout is then to be made
// anew. Nothing can be seen that lies beyond what the figure's own axes hold.
class ChartZoom {
 public:
  const std::vector<VisibleRange>& visible() const { return visible_; }
  bool isWhole() const { return visible_.empty(); }
  bool showAll();

  // Shows `factor` times as much (below 1: less) around a place of the page: along both axes of a plane, or, beside
  // it, along the axis that stands there; along the nearest axis of a cobweb.
  bool zoomAt(const Figure& figure, const FigureLayout& layout, double x, double y, double factor);
  // The same around the middle of a chart. Cobwebs keep what they show.
  bool zoom(const Figure& figure, const FigureLayout& layout, std::size_t chart, double factor);
  // Shows what lies in the box, of a plane.
  bool showBox(const Figure& figure, const FigureLayout& layout, std::size_t chart, const Rect& box);
  // Moves what a plane or bars show by parts of its width and height, to the right and up.
  bool shift(const Figure& figure, const FigureLayout& layout, std::size_t chart, double right, double up);

 private:
  struct Span {
    double lower, upper;
  };
  // An axis as it is shown, and its whole.
  struct Shown {
    std::size_t chart, axis;
    AxisMap map;
    Span whole;
    bool upright;
  };
  static std::vector<Shown> axesOf(const Figure& figure, const FigureLayout& layout, std::size_t chart);
  static std::vector<Shown> axesAt(const Figure& figure, const FigureLayout& layout, double x, double y);
  bool set(const Shown& axis, Span span);

  std::vector<VisibleRange> visible_;
};

// The chart whose area holds a place of the page.
std::optional<std::size_t> chartAt(const FigureLayout& layout, double x, double y);

// The figure with axes that hold no more than what is visible: for files and copies of what a view shows.
Figure figureWithin(const Figure& figure, const std::vector<VisibleRange>& visible);

}  // namespace tarvex
