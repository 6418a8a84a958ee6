#include "factors/Distribution.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "factors/InverseSearch.h"
#include "factors/properForm.h"

namespace tarvex {
namespace {

constexpr double kTolerance = 1e-11;  // of a cumulative's size
constexpr int kMaxPasses = 1001;

bool areFinite(const std::vector<TablePoint>& points) {
  return std::ranges::all_of(points, [](const TablePoint& p) { return std::isfinite(p.x) && std::isfinite(p.p); });
}

}  // namespace

bool Distribution::prepareInverse() {
  std::vector<TablePoint> points;
  points.reserve(kTablePoints);
  // Without finite moments the steps would walk over nan.
  bool found = std::isfinite(mean()) && std::isfinite(stdDev());
  if (found && !(countedSearch(*this, points) && areFinite(points))) {
    points.clear();
    found = boundedSearch(*this, points) && areFinite(points);
  }
  if (!found) {
    table.clear();
    return false;
  }
  table.insert(table.end(), points.begin(), points.end());
  return true;
}

bool Distribution::hasTable() const {
  return table.size() >= kTablePoints;
}

double Distribution::inverse(double u) const {
  if (!hasTable()) return std::numeric_limits<double>::quiet_NaN();
  const double place = u * 100.0;
  if (!(place < 100.0)) return table[100].x;
  const std::size_t i = place > 0.0 ? static_cast<std::size_t>(place) : 0;
  if (std::fabs(table[i].p - u) < std::fabs(table[i].p) * kTolerance) return table[i].x;
  return bisectTable(i, u, kTolerance, kMaxPasses);
}

double Distribution::bisectTable(std::size_t i, double target, double tolerance, int maxPasses) const {
  TablePoint lo = table[i];
  TablePoint hi = table[i + 1];
  for (int pass = 0; pass < maxPasses && std::fabs(lo.p - hi.p) > std::fabs(lo.p) * tolerance; ++pass) {
    const double m = middle(lo.x, hi.x);
    if (m == lo.x || m == hi.x) break;
    const double p = cumulative(m);
    if (p <= target) {
      lo = {m, p};
    } else {
      hi = {m, p};
    }
  }
  return middle(lo.x, hi.x);
}

}  // namespace tarvex
