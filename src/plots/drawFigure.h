#pragma once

typedef struct _cairo cairo_t;

namespace tarvex {

struct Figure;

// The surface that a figure is drawn on.
struct DrawTarget {
  double width = 800.0;  // of the rectangle from (0, 0) that is filled, in units of which 96 are an inch
  double height = 600.0;
  double pixelsPerUnit = 1.0;  // resolution of layers that are painted as an image: of the screen, or of print
  bool vector = false;         // a file of lines and texts: small layers stay such; else the surface is of pixels
};

// Draws the whole figure on white. The context's transformation counts; its state is restored.
void drawFigure(cairo_t* context, const Figure& figure, const DrawTarget& target);

// The version of the library that draws.
const char* drawingVersion();

// False when the system has no font at all, without which nothing can be drawn.
bool hasFont();

}  // namespace tarvex
