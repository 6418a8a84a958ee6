#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/Progress.h"
#include "plots/AxisMap.h"
#include "plots/Rect.h"

namespace tarvex {

// The points of a plane by where they lie, for those around a place to be found at once.
class PointGrid {
 public:
  // False when it was stopped; the grid is then as it was. Points outside of the axes are not part of it.
  [[nodiscard]] bool build(const Points& points, const AxisMap& x, const AxisMap& y, const Rect& plane,
                           const Progress& progress);

  // Calls `visit` with the number of each point that may lie within `reach` of a place, in ascending order in a cell.
  template <class Visit>
  void visitNear(double x, double y, double reach, Visit visit) const {
    if (starts_.empty()) return;
    for (std::size_t row = cellOf(y - reach - plane_.y, rows_); row <= cellOf(y + reach - plane_.y, rows_); ++row)
      for (std::size_t column = cellOf(x - reach - plane_.x, columns_);
           column <= cellOf(x + reach - plane_.x, columns_); ++column) {
        const std::size_t cell = row * columns_ + column;
        for (std::uint32_t i = starts_[cell]; i < starts_[cell + 1]; ++i) visit(static_cast<std::size_t>(points_[i]));
      }
  }

 private:
  static std::size_t cellOf(double distance, std::size_t count);

  Rect plane_;
  std::size_t columns_ = 0, rows_ = 0;
  std::vector<std::uint32_t> starts_;  // of each cell in points_; one more than cells
  std::vector<std::uint32_t> points_;
};

}  // namespace tarvex
