#include "plots/PointGrid.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace tarvex {

namespace {

constexpr double kGridCell = 8.0;              // about twice the reach of a pointer
constexpr std::size_t kSortedAtOnce = 200000;  // between two reports
constexpr std::uint32_t kNowhere = 0xffffffffU;

}  // namespace

std::size_t PointGrid::cellOf(double distance, std::size_t count) {
  if (!(distance > 0.0)) return 0;
  return std::min(static_cast<std::size_t>(std::min(distance / kGridCell, 1e6)), count - 1);
}

bool PointGrid::build(const Points& points, const AxisMap& x, const AxisMap& y, const Rect& plane,
                      const Progress& progress) {
  PointGrid grid;
  grid.plane_ = plane;
  grid.columns_ = static_cast<std::size_t>(std::ceil(std::max(plane.width, 1.0) / kGridCell));
  grid.rows_ = static_cast<std::size_t>(std::ceil(std::max(plane.height, 1.0) / kGridCell));
  grid.starts_.resize(grid.columns_ * grid.rows_ + 1);
  const std::size_t size = std::min({points.x.size(), points.y.size(), static_cast<std::size_t>(kNowhere)});
  std::vector<std::uint32_t> cells(size, kNowhere);
  for (std::size_t i = 0; i < size; ++i) {
    if (i % kSortedAtOnce == 0 && !progress.report(i, size)) return false;
    const double atX = points.shownX(i);
    const double atY = points.shownY(i);
    if (!x.holds(atX) || !y.holds(atY)) continue;
    const std::size_t row = cellOf(y(atY) - plane.y, grid.rows_);
    cells[i] = static_cast<std::uint32_t>(row * grid.columns_ + cellOf(x(atX) - plane.x, grid.columns_));
    ++grid.starts_[cells[i] + 1];
  }
  std::partial_sum(grid.starts_.begin(), grid.starts_.end(), grid.starts_.begin());
  grid.points_.resize(grid.starts_.back());
  std::vector<std::uint32_t> next(grid.starts_.begin(), grid.starts_.end() - 1);
  for (std::size_t i = 0; i < size; ++i)
    if (cells[i] != kNowhere) grid.points_[next[cells[i]]++] = static_cast<std::uint32_t>(i);
  *this = std::move(grid);
  return true;
}

}  // namespace tarvex
