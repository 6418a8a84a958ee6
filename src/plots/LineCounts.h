#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/Progress.h"
#include "plots/Colour.h"

namespace tarvex {

// Many lines over parallel axes, as counts: how much of each pixel they cover together, and the mean of their colours
// there. The order of the lines doesn't matter, nor does the number of threads.
class LineCounts {
 public:
  struct Axis {
    double x = 0.0;           // in pixels
    std::vector<float> rows;  // where each line meets the axis, in pixels; a line is interrupted by what isn't finite
  };

  // A plane of so many pixels and lines of that thickness, in pixels.
  LineCounts(int width, int height, double thickness) : width_(width), height_(height), thickness_(thickness) {}

  // Counts all lines between neighbouring axes. `classes` are places of the lines' colours in the palette; one past its
  // end is black. False when it was stopped: no counts are then there.
  // Requires: axes from left to right, all with as many rows as there are classes.
  [[nodiscard]] bool count(const std::vector<Axis>& axes, const std::vector<std::uint8_t>& classes,
                           const std::vector<Colour>& palette, const Progress& progress);

  // Row after row: coverage in parts, of which a line adds parts() to a pixel that it covers; and the opaque ink
  // there, as cairo's ARGB32.
  const std::vector<std::uint32_t>& counts() const { return counts_; }
  const std::vector<std::uint32_t>& inks() const { return inks_; }
  std::uint32_t parts() const { return parts_; }

 private:
  int width_, height_;
  double thickness_;
  std::uint32_t parts_ = 1;
  std::vector<std::uint32_t> counts_, inks_;
};

}  // namespace tarvex
