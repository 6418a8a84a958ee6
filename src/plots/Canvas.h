#pragma once

#include <utility>
#include <vector>

#include "plots/Figure.h"
#include "plots/Rect.h"
#include "plots/TextPen.h"
#include "plots/drawFigure.h"

namespace tarvex {

// The inks of everything that isn't data.
inline constexpr Colour kInk = {8000, 8000, 8000};          // texts
inline constexpr Colour kFrameInk = {22000, 22000, 22000};  // axes, ticks, leader lines
inline constexpr Colour kGridInk = {58500, 58500, 58500};
inline constexpr Colour kFaintInk = {30000, 30000, 30000};  // texts that stand back

// `share` of the way from one colour to the other.
Colour blend(const Colour& from, const Colour& to, double share);
// What outlines a filled shape, so that it is seen in gray print and beside its equals.
Colour outlineOf(const Colour& fill);

// The context of a drawing, and the sizes that all its parts share.
class Canvas {
 public:
  // Sizes of texts, marks and gaps are multiplied by `scale`, for pictures smaller than what they were made for.
  Canvas(cairo_t* context, const DrawTarget& target, double scale);

  cairo_t* context() const { return context_; }
  TextPen& pen() { return pen_; }
  bool isVector() const { return target_.vector; }
  double pixelsPerUnit() const { return target_.pixelsPerUnit; }
  double scale() const { return scale_; }

  TextStyle titleStyle() const { return {15.0 * scale_, true}; }
  TextStyle headingStyle() const { return {12.5 * scale_, true}; }  // of a chart
  TextStyle bodyStyle() const { return {12.0 * scale_, false}; }    // subtitle, axis titles, legend
  TextStyle tickStyle() const { return {11.0 * scale_, false}; }
  double gap() const { return 6.0 * scale_; }  // between neighbouring parts

  void setColour(const Colour& colour);
  void fill(const Rect& rect, const Colour& colour);
  void outline(const Rect& rect, const Colour& colour, double width);
  // Straight lines of the frame: on whole pixels, where there are some.
  void horizontal(double fromX, double toX, double y, const Colour& colour, double width = 1.0);
  void vertical(double x, double fromY, double toY, const Colour& colour, double width = 1.0);
  // The position of a thin line, on a pixel of a surface that has some.
  double snapped(double position) const;

  // Sets width and dashes of lines that follow. `offset`: length of the line already drawn.
  void setLine(double width, LineStyle style = LineStyle::Solid, double offset = 0.0);

 private:
  cairo_t* context_;
  DrawTarget target_;
  double scale_;
  TextPen pen_;
};

// Restores the context's state at the end of the scope; with a rectangle, clips to it.
class SavedState {
 public:
  explicit SavedState(cairo_t* context);
  SavedState(cairo_t* context, const Rect& clip);
  ~SavedState();
  SavedState(const SavedState&) = delete;
  SavedState& operator=(const SavedState&) = delete;

 private:
  cairo_t* context_;
};

// The part of a line from (x0, y0) to (x1, y1) within `clip`; false when there is none or an end isn't finite.
bool clipLine(const Rect& clip, double& x0, double& y0, double& x1, double& y1);

// A polyline within `clip`, interrupted at points that aren't finite. Only what is inside is handed to the surface.
void strokePolyline(Canvas& canvas, const Rect& clip, const std::vector<std::pair<double, double>>& points,
                    double width, LineStyle style);

}  // namespace tarvex
