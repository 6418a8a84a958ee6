#include "plots/DiscCounts.h"

#include <algorithm>
#include <cmath>

namespace tarvex {

namespace {

// Discs stand at quarters of a pixel.
constexpr int kPhases = 4;
constexpr int kSamples = 4;  // of a pixel's coverage, across

std::uint8_t coverage(double left, double top, double radius) {
  int inside = 0;
  for (int sample = 0; sample < kSamples * kSamples; ++sample) {
    const double x = left + (sample % kSamples + 0.5) / kSamples;
    const double y = top + (sample / kSamples + 0.5) / kSamples;
    if (x * x + y * y <= radius * radius) ++inside;
  }
  return static_cast<std::uint8_t>(inside * static_cast<int>(DiscCounts::kFull) / (kSamples * kSamples));
}

}  // namespace

// A mask for a disc's centre at each quarter of its pixel.
DiscCounts::DiscCounts(int width, int height, double radius)
    : width_(width),
      height_(height),
      reach_(static_cast<int>(std::ceil(radius))),
      side_(2 * reach_ + 1),
      counts_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)) {
  for (int phase = 0; phase < kPhases * kPhases; ++phase) {
    const double centreX = reach_ + (phase % kPhases + 0.5) / kPhases;
    const double centreY = reach_ + (phase / kPhases + 0.5) / kPhases;
    for (int y = 0; y < side_; ++y)
      for (int x = 0; x < side_; ++x) masks_.push_back(coverage(x - centreX, y - centreY, radius));
  }
}

const std::uint8_t* DiscCounts::maskAt(double fractionX, double fractionY) const {
  const int phase = static_cast<int>(fractionY * kPhases) * kPhases + static_cast<int>(fractionX * kPhases);
  return masks_.data() + phase * side_ * side_;
}

void DiscCounts::add(double x, double y) {
  if (!(x >= 0.0 && y >= 0.0 && x < width_ && y < height_)) return;
  const int column = static_cast<int>(x);
  const int row = static_cast<int>(y);
  const std::uint8_t* mask = maskAt(x - column, y - row);
  if (column < reach_ || row < reach_ || column + reach_ >= width_ || row + reach_ >= height_) {
    addAtEdge(column, row, mask);
    return;
  }
  std::uint32_t* out = counts_.data() + static_cast<std::size_t>(row - reach_) * static_cast<std::size_t>(width_) +
                       static_cast<std::size_t>(column - reach_);
  for (int my = 0; my < side_; ++my, out += width_)
    for (int mx = 0; mx < side_; ++mx) out[mx] += *mask++;
}

void DiscCounts::addAtEdge(int column, int row, const std::uint8_t* mask) {
  for (int my = 0; my < side_; ++my)
    for (int mx = 0; mx < side_; ++mx, ++mask) {
      const int px = column - reach_ + mx;
      const int py = row - reach_ + my;
      if (px < 0 || py < 0 || px >= width_ || py >= height_) continue;
      counts_[static_cast<std::size_t>(py) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(px)] += *mask;
    }
}

}  // namespace tarvex
