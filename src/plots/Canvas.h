#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "plots/Figure.h"
#include "plots/Metrics.h"
#include "plots/Rect.h"
#include "plots/drawFigure.h"

namespace tarvex {

// `share` of the way from one colour to the other.
Colour blend(const Colour& from, const Colour& to, double share);
// What outlines a filled shape, so that it is seen in gray print and beside its equals.
Colour outlineOf(const Colour& fill);

// The context of a drawing, and how it is drawn on.
class Canvas : public Metrics {
 public:
  // Requires: options that outlive the canvas.
  Canvas(cairo_t* context, double scale, const DrawOptions& options, const FigureFont& font);

  cairo_t* context() const { return context_; }
  Surface surface() const { return options_.surface; }
  bool isVector() const { return options_.surface == Surface::VectorFile; }
  double pixelsPerUnit() const { return options_.pixelsPerUnit; }
  const Inks& inks() const { return options_.inks; }
  bool isMarked(std::int32_t number) const;
  bool marksAny() const { return !options_.marked.empty(); }

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
  const DrawOptions& options_;
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
