#pragma once

#include "plots/FigureFont.h"
#include "plots/TextPen.h"

namespace tarvex {

// The sizes that all parts of a figure share, and the pen that knows how wide its texts are.
class Metrics {
 public:
  // Sizes of texts, marks and gaps are multiplied by `scale`, for pictures smaller than what they were made for.
  Metrics(cairo_t* context, double scale, const FigureFont& font)
      : pen_(context, font.family), scale_(scale), textScale_(scale * font.scale) {}

  TextPen& pen() { return pen_; }
  double scale() const { return scale_; }

  TextStyle titleStyle() const { return {15.0 * textScale_, true}; }
  TextStyle headingStyle() const { return {12.5 * textScale_, true}; }  // of a chart
  TextStyle bodyStyle() const { return {12.0 * textScale_, false}; }    // subtitle, axis titles, legend
  TextStyle tickStyle() const { return {11.0 * textScale_, false}; }
  double gap() const { return 6.0 * scale_; }  // between neighbouring parts

 private:
  TextPen pen_;
  double scale_, textScale_;
};

}  // namespace tarvex
