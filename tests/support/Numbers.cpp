#include "support/Numbers.h"

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <limits>

namespace tarvex::test {

testing::AssertionResult agrees(double actual, double expected, double relative, double absolute) {
  if (actual == expected || (std::isnan(actual) && std::isnan(expected))) return testing::AssertionSuccess();
  const double difference = std::fabs(actual - expected);
  if (std::isfinite(expected) && difference <= std::max(relative * std::fabs(expected), absolute))
    return testing::AssertionSuccess();
  return testing::AssertionFailure() << std::setprecision(std::numeric_limits<double>::max_digits10) << actual
                                     << " instead of " << expected << ", off by " << difference;
}

}  // namespace tarvex::test
