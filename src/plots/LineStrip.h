#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "base/Progress.h"
#include "plots/Colour.h"

namespace tarvex {

// The grid on which lines are counted.
struct LineGrid {
  int height = 0;      // of the plane, in pixels
  int subRows = 4;     // of a pixel
  int subColumns = 1;  // of a pixel
  int above = 1;       // what a line covers beyond its middle, in subrows
  int below = 1;
};

// Counts lines between two axes. Each is followed from column to column of the grid; in a column it covers the subrows
// from where it enters to where it leaves. For lines that go down these are, in number,
//     (lines that entered at or above the subrow) - (lines that left above it),
// and the other way round for those that go up. So it is enough to count, at each border of columns, the lines by their
// subrow, and to sum up: a step for each line and column, however steep it is.
class LineStrip {
 public:
  static constexpr int kMostBeyond = 32;  // of LineGrid::above and below

  // From pixel column `first` up to, not including, `last`; the axes stand at fromX and toX.
  LineStrip(const LineGrid& grid, int first, int last, double fromX, double toX);

  // The lines from `from` to `to`, in pixels; those with an end that isn't finite are passed over.
  // False when it was stopped. Requires: as many rows and classes on both sides.
  [[nodiscard]] bool count(std::span<const float> from, std::span<const float> to,
                           std::span<const std::uint8_t> classes, const std::vector<Colour>& palette,
                           const Progress& progress);
  // Coverage and colour of a pixel, row after row of the whole plane of `width` pixels.
  void write(int width, std::vector<std::uint32_t>& counts, std::vector<std::uint32_t>& inks) const;

 private:
  // Lines of one class and direction, as places in from_ and rise_.
  struct Group {
    std::size_t first = 0, last = 0;
    bool isClamped = false;  // some lines leave the slots
  };

  [[nodiscard]] bool sort(std::span<const float> from, std::span<const float> to, std::span<const std::uint8_t> classes,
                          const Progress& progress);
  // Some borders from this one on.
  void countBorders(std::size_t border, const Group& down, const Group& up);
  void sumUp();
  void addClass(const Colour& colour);

  LineGrid grid_;
  int first_;
  std::size_t columns_, rows_, slots_, borders_;
  double fromX_, toX_;
  std::vector<float> from_, rise_;  // of the lines, group after group, in slots: subrows with a margin on both sides
  std::vector<Group> groups_;       // of each class: down, up
  std::vector<std::uint32_t> down_, up_;       // hits at some borders, slot by slot; then sums of their sums
  std::vector<std::uint32_t> entered_, left_;  // of each border and row: covered to its right, to its left
  std::vector<std::uint32_t> covered_;         // of each column and row
  std::vector<float> red_, green_, blue_;      // the same, times the colours
};

}  // namespace tarvex
