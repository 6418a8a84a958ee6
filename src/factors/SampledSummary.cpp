#include "factors/SampledSummary.h"

#include <array>
#include <cmath>
#include <memory>

#include "factors/TruncatedDistribution.h"
#include "factors/changeKind.h"

namespace tarvex {
namespace {

constexpr double kLow = 0.05;
constexpr double kHigh = 0.95;

// Gauss-Legendre on -1 to 1 with four points: exact for polynomials of the seventh degree.
// Source: M. Abramowitz, I. A. Stegun, table 25.4.
struct Node {
  double place, weight;
};
constexpr std::array<Node, 4> kNodes{{{-0.861136311594053, 0.347854845137454},
                                      {-0.339981043584856, 0.652145154862546},
                                      {0.339981043584856, 0.652145154862546},
                                      {0.861136311594053, 0.347854845137454}}};

// Moments of the part between the truncations: with G the cumulative of that part, between its ends a and c,
// E(X - m) = c - m - integral of G, E(X - m)^2 = (c - m)^2 - integral of 2 (x - m) G, m being any number. The
// cumulative is smooth between the points of the table, which stand closest where it is steepest.
void truncatedMoments(const TruncatedDistribution& prepared, SampledSummary& summary) {
  const double from = prepared.leftTruncation();
  const double span = prepared.rightTruncation() - from;
  const double a = prepared.inverse(0.0);
  const double c = prepared.inverse(1.0);
  const double m = prepared.inverse(0.5);
  double first = 0.0;
  double second = 0.0;
  double left = a;
  const auto add = [&](double right) {
    const double half = (right - left) / 2.0;
    for (const Node& node : kNodes) {
      const double x = left + half * (1.0 + node.place);
      const double part = (prepared.cumulative(x) - from) / span;
      first += node.weight * half * part;
      second += node.weight * half * 2.0 * (x - m) * part;
    }
    left = right;
  };
  for (const TablePoint& point : prepared.table)
    if (point.x > left && point.x < c) add(point.x);
  // The last cell may be a long tail.
  constexpr int kTailCells = 64;
  const double step = (c - left) / kTailCells;
  for (int i = 1; i < kTailCells; ++i) add(left + step);
  add(c);
  const double shift = c - m - first;
  summary.mean = m + shift;
  summary.deviation = std::sqrt(std::fmax((c - m) * (c - m) - second - shift * shift, 0.0));
}

// A copy that is ready to be drawn from; null for a factor that can't be. The factor itself stays as it is: an inverse
// table belongs to a generation.
std::unique_ptr<Factor> prepared(const Factor& factor) {
  std::unique_ptr<Factor> copy = factor.clone();
  auto* const distribution = dynamic_cast<Distribution*>(copy.get());
  if (distribution == nullptr || !factor.parameterProblem().empty()) return nullptr;
  if (distribution->needsTable() && (!distribution->prepareInverse() || distribution->table.empty())) return nullptr;
  return copy;
}

}  // namespace

bool summariseSampled(const Factor& factor, SampledSummary& summary) {
  const std::unique_ptr<Factor> copy = prepared(factor);
  if (!copy) return false;
  const auto* const distribution = static_cast<const Distribution*>(copy.get());
  summary = {expectationOf(*distribution), distribution->stdDev(), distribution->value(kLow),
             distribution->value(kHigh)};
  const auto* const truncated = dynamic_cast<const TruncatedDistribution*>(distribution);
  if (truncated != nullptr && truncated->rightTruncation() > truncated->leftTruncation())
    truncatedMoments(*truncated, summary);
  return true;
}

bool stratifiedSample(const Factor& factor, std::vector<double>& values) {
  const std::unique_ptr<Factor> copy = prepared(factor);
  if (!copy) return false;
  for (std::size_t i = 0; i < values.size(); ++i)
    values[i] = (static_cast<double>(i) + 0.5) / static_cast<double>(values.size());
  static_cast<Distribution&>(*copy).values(values.data(), values.data(), values.size());
  return true;
}

}  // namespace tarvex
