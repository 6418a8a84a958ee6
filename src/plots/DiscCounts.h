#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tarvex {

// Discs on a plane of pixels: how much of each pixel they cover together.
class DiscCounts {
 public:
  static constexpr std::uint32_t kFull = 255;  // what a disc adds to a pixel that it covers

  // `radius` in pixels.
  DiscCounts(int width, int height, double radius);

  // A disc at a place in pixels; one outside of the plane is none.
  void add(double x, double y);
  // Row after row.
  const std::vector<std::uint32_t>& counts() const { return counts_; }

 private:
  const std::uint8_t* maskAt(double fractionX, double fractionY) const;
  void addAtEdge(int column, int row, const std::uint8_t* mask);

  int width_, height_;
  int reach_, side_;  // of a mask, in pixels
  std::vector<std::uint8_t> masks_;
  std::vector<std::uint32_t> counts_;
};

}  // namespace tarvex
