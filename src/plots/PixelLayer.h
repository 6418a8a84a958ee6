#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "plots/Figure.h"
#include "plots/Rect.h"

namespace tarvex {

class Canvas;

// A part of the picture as pixels of our own, for data of which there is too much to hand over one by one: at the
// resolution of the screen or of print. Nothing is drawn until paint().
class PixelLayer {
 public:
  // Covers `area`, and whole pixels around it, at the canvas's resolution.
  PixelLayer(Canvas& canvas, const Rect& area);

  // Discs of one colour; the more of them meet, the darker. Places are on the canvas.
  void addDiscs(const std::vector<std::pair<double, double>>& places, double radius, const Colour& colour);
  // A straight line over what is there; in files it is opaque. Requires: an opacity of at most 1.
  void addLine(double x0, double y0, double x1, double y1, double width, const Colour& colour, double opacity);

  void paint();

 private:
  void coverSpan(int step, double from, double to, bool steep, std::uint32_t ink, double alpha);
  void composeOnWhite();
  void paintMask(std::uint32_t ink);
  void paintImage(std::uint32_t* data, int format, int stride);

  Canvas& canvas_;
  double perUnit_;  // pixels
  double x_, y_;    // of the upper left pixel
  int width_, height_;
  std::vector<std::uint32_t> pixels_;     // as cairo's ARGB32: colours multiplied by alpha
  std::map<std::uint32_t, Colour> inks_;  // of the lines, by the pixels that they leave in files
};

}  // namespace tarvex
