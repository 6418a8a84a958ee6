#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <limits>

#include "base/sortPositions.h"

namespace tarvex::test {

// True when `actual` lies within `relative` of the size of `expected`, or within `absolute` of it. Two not-a-numbers
// agree, and so do two equal infinities.
inline testing::AssertionResult agrees(double actual, double expected, double relative, double absolute = 0.0) {
  if (actual == expected || (std::isnan(actual) && std::isnan(expected))) return testing::AssertionSuccess();
  const double difference = std::fabs(actual - expected);
  if (std::isfinite(expected) && difference <= std::max(relative * std::fabs(expected), absolute))
    return testing::AssertionSuccess();
  return testing::AssertionFailure() << std::setprecision(std::numeric_limits<double>::max_digits10) << actual
                                     << " instead of " << expected << ", off by " << difference;
}

// Spearman's rank correlation of two columns without ties.
inline double rankCorrelation(const std::vector<double>& x, const std::vector<double>& y) {
  std::vector<std::int32_t> xRanks;
  std::vector<std::int32_t> yRanks;
  if (!ranksOf(x, xRanks) || !ranksOf(y, yRanks)) return NAN;
  const double n = static_cast<double>(x.size());
  double sum = 0.0;
  for (std::size_t i = 0; i < x.size(); ++i) sum += std::pow(xRanks[i] - yRanks[i], 2);
  return 1.0 - 6.0 * sum / (n * (n * n - 1.0));
}

// What a rank correlation may miss its target by: four standard deviations over `rows` rows, and the gap of up to 0.018
// between the correlation of normal scores and that of ranks (r_s = 6 / pi asin(r / 2)).
inline double rankTolerance(double target, std::size_t rows) {
  return 0.018 + 4.0 * (1.0 - target * target) / std::sqrt(static_cast<double>(rows));
}

}  // namespace tarvex::test
