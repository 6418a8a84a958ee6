#include "factors/Distribution.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/Cores.h"
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

void Distribution::clearTable() {
  table.clear();
  cells_.clear();
}

InverseRule Distribution::inverseRule() const {
  return {kTolerance, kMaxPasses};
}

bool Distribution::searchFor(double u, InverseCells::Search& search, double& x) const {
  const double place = u * 100.0;
  x = table[100].x;
  if (!(place < 100.0)) return false;
  search = {place > 0.0 ? static_cast<std::size_t>(place) : 0, u};
  const TablePoint& lo = table[search.cell];
  x = lo.x;
  return !(std::fabs(lo.p - u) < std::fabs(lo.p) * kTolerance);
}

double Distribution::inverse(double u) const {
  double x = std::numeric_limits<double>::quiet_NaN();
  InverseCells::Search search{};
  return hasTable() && Distribution::searchFor(u, search, x) ? bisect(search, Distribution::inverseRule()) : x;
}

void Distribution::values(const double* u, double* x, std::size_t count) {
  constexpr std::size_t kLeast = 1024;  // some 50 microseconds
  cells_.resize(std::max(cells_.size(), partsOf(count, kLeast)));
  inParts(count, kLeast, [&](std::size_t part, std::size_t first, std::size_t last) {
    fill(cells_[part], u + first, x + first, last - first);
  });
}

void Distribution::fill(InverseCells& cells, const double* u, double* x, std::size_t count) const {
  if (!needsTable() || !hasTable()) {
    for (std::size_t k = 0; k < count; ++k) x[k] = value(u[k]);
    return;
  }
  InverseCells::Search searches[InverseCells::kLanes];
  std::size_t places[InverseCells::kLanes];
  double found[InverseCells::kLanes];
  std::size_t waiting = 0;
  const auto finish = [&] {
    cells.find(*this, searches, found, waiting);
    for (std::size_t i = 0; i < waiting; ++i) x[places[i]] = found[i];
    waiting = 0;
  };
  for (std::size_t k = 0; k < count; ++k) {
    places[waiting] = k;
    if (searchFor(u[k], searches[waiting], x[k]) && ++waiting == InverseCells::kLanes) finish();
  }
  finish();
}

double Distribution::bisect(const InverseCells::Search& search, const InverseRule& rule) const {
  TablePoint lo = table[search.cell];
  TablePoint hi = table[search.cell + 1];
  for (int pass = 0; pass < rule.maxPasses && std::fabs(lo.p - hi.p) > std::fabs(lo.p) * rule.tolerance; ++pass) {
    const double m = middle(lo.x, hi.x);
    if (m == lo.x || m == hi.x) break;
    const double p = cumulative(m);
    if (p <= search.target) {
      lo = {m, p};
    } else {
      hi = {m, p};
    }
  }
  return middle(lo.x, hi.x);
}

}  // namespace tarvex
