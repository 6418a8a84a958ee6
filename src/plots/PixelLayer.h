#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "base/Progress.h"
#include "plots/Figure.h"
#include "plots/Rect.h"

namespace tarvex {

class Canvas;
class DiscCounts;
class LineCounts;

// A part of the picture as pixels of our own, for data of which there is too much to hand over one by one: at the
// resolution of the screen or of print. Nothing is drawn until paint().
class PixelLayer {
 public:
  // Covers `area`, and whole pixels around it, at the canvas's resolution. After a stop there are no pixels, and what
  // is handed the same progress answers false.
  PixelLayer(Canvas& canvas, const Rect& area, const Progress& progress);

  int width() const { return width_; }  // in pixels
  int height() const { return height_; }
  double perUnit() const { return perUnit_; }  // pixels
  // A place on the canvas, in pixels of the layer.
  double pixelX(double x) const { return (x - x_) * perUnit_; }
  double pixelY(double y) const { return (y - y_) * perUnit_; }

  // Discs of one colour; the more of them meet, the darker. `single`: the opacity of one alone.
  // False when it was stopped. Requires: counts of as many pixels as the layer has.
  [[nodiscard]] bool cover(const DiscCounts& discs, const Colour& colour, double single, const Progress& progress);
  // The same, but opaque: each pixel in the colour of how many discs meet there, from the first of `colours` for one to
  // the last for the most, by the logarithm of the count.
  [[nodiscard]] bool cover(const DiscCounts& discs, const std::vector<Colour>& colours, const Progress& progress);
  // Lines of a palette; where colours meet, they mix by how many lines have each. The same.
  [[nodiscard]] bool cover(const LineCounts& lines, double single, const Progress& progress);
  // For files: an opaque straight line of whole pixels over what is there. Places are on the canvas.
  void addLine(double x0, double y0, double x1, double y1, double width, const Colour& colour);

  // False when it was stopped.
  [[nodiscard]] bool paint(const Progress& progress);

 private:
  template <class InkAt, class Opacity>
  [[nodiscard]] bool mixAll(const std::vector<std::uint32_t>& counts, InkAt inkAt, const Opacity& opacity,
                            const Progress& progress);
  void inkSpan(int step, double from, double to, bool steep, std::uint32_t ink);
  [[nodiscard]] bool composeOnWhite(const Progress& progress);
  [[nodiscard]] bool paintMask(std::uint32_t ink, const Progress& progress);
  void paintImage(std::uint32_t* data, int format, int stride);

  Canvas& canvas_;
  double perUnit_;
  double x_, y_;  // of the upper left pixel
  int width_, height_;
  std::vector<std::uint32_t> pixels_;     // as cairo's ARGB32: colours multiplied by alpha
  std::map<std::uint32_t, Colour> inks_;  // of the lines, by the pixels that they leave in files
};

}  // namespace tarvex
