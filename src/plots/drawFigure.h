#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/Progress.h"
#include "plots/Inks.h"

typedef struct _cairo cairo_t;

namespace tarvex {

struct Figure;
struct FigureLayout;

// What becomes of a drawing. It decides how many points and lines are drawn one by one, and not counted pixel by pixel.
enum class Surface {
  Screen,      // pixels, drawn again and again while someone waits
  ImageFile,   // pixels, drawn once
  VectorFile,  // lines and texts, drawn once
};

struct DrawOptions {
  Surface surface = Surface::Screen;
  double pixelsPerUnit =
      1.0;  // of a surface of pixels: its own; of a vector file: of what is painted as an image there
  Inks inks = {};
  std::vector<std::int32_t> marked = {};  // numbers of runs or records that stand out, in the overlay
};

// The parts of a picture from back to front. A view keeps each as an image, and draws again what changed: after a
// filter has moved Dropped, Kept and Overlay; after another run is marked, Overlay.
enum class FigureLayer {
  Frame,    // the page, titles, grid, axes, legend; the only one that fills the page
  Dropped,  // runs that the filters left out
  Kept,     // all other data
  Front,    // axes that lie over the data
  Overlay,  // bounds of filters, regions, what is marked
};
inline constexpr FigureLayer kFigureLayers[] = {FigureLayer::Frame, FigureLayer::Dropped, FigureLayer::Kept,
                                                FigureLayer::Front, FigureLayer::Overlay};

// Draws one layer of the figure within the page of its layout. The context's transformation counts; its state is
// restored. False when it was stopped: part of the layer may then be there.
// Requires: a layout of this figure, but for what `dropped`, filters and regions are now.
[[nodiscard]] bool drawLayer(cairo_t* context, const Figure& figure, const FigureLayout& layout, FigureLayer layer,
                             const DrawOptions& options, const Progress& progress = {});

// Draws the whole figure in the size given, in units of which 96 are an inch. False when it was stopped.
[[nodiscard]] bool drawFigure(cairo_t* context, const Figure& figure, double width, double height,
                              const DrawOptions& options, const Progress& progress = {});

// The version of the library that draws.
const char* drawingVersion();

// False when the system has no font at all, without which nothing can be drawn.
bool hasFont();
// Whether there is one of that family; another takes the place of one that there isn't.
bool hasFont(const std::string& family);

}  // namespace tarvex
