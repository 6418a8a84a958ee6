#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/Progress.h"
#include "postproc/OutputTable.h"

namespace tarvex {

// A number that was estimated from runs, with the interval that holds the true one with a given confidence. Where an
// end is missing the runs are too few to bound it on that side.
struct Estimate {
  double value = 0.0;
  std::optional<double> lower = {};
  std::optional<double> upper = {};
};

// The values of one variable, in order. Both intervals hold whatever the distribution is, as long as the runs are
// independent draws of it. W. J. Conover, Practical Nonparametric Statistics (1999), 3.1 and 3.2.
class OrderedRuns {
 public:
  OrderedRuns() = default;
  // Values that are not numbers are left out, and counted as missing.
  explicit OrderedRuns(std::vector<double> values);

  std::int64_t count() const { return static_cast<std::int64_t>(values_.size()); }
  std::int64_t missing() const { return missing_; }

  // The quantile of a share of 0 to 1: the straight line between the values in order, of which the first is that of 0
  // and the last that of 1. Its interval goes from one of the values to another: the narrowest on each side for which
  // the binomial distribution gives at most (1 - confidence) / 2. nan without values.
  Estimate quantile(double share, double confidence) const;
  // The probability of a value above `threshold`: the share of the values. Its interval is that of C. J. Clopper and E.
  // S. Pearson, Biometrika 26 (1934) 404, from the binomial distribution itself. nan without values.
  Estimate exceedance(double threshold, double confidence) const;

 private:
  std::vector<double> values_;
  std::int64_t missing_ = 0;
};

inline constexpr const char* kQuantileMethod = "order statistics, binomial";
inline constexpr const char* kExceedanceMethod = "Clopper-Pearson, exact";
inline constexpr double kUsualConfidence = 0.95;

// What is to be estimated of each variable.
struct QuantileRequest {
  std::vector<double> shares = {0.01, 0.05, 0.25, 0.5, 0.75, 0.95, 0.99};
  std::vector<double> thresholds = {};
  double confidence = kUsualConfidence;

  // Why it can't be computed, a sentence for the user; empty when it can. Shares lie between 0 and 1, the confidence
  // does so without the ends.
  std::string problem() const;
};

// What was estimated of one variable, parallel to the request.
struct VariableQuantiles {
  std::int64_t runs = 0;     // with a number
  std::int64_t missing = 0;  // without
  std::vector<Estimate> quantiles;
  std::vector<Estimate> exceedances;
};
VariableQuantiles quantilesOf(const OrderedRuns& runs, const QuantileRequest& request);

// The same of all columns of a table.
struct QuantileTable {
  QuantileRequest request;
  std::vector<VariableQuantiles> variables;
};
// False, with `message`, when a column can't be read or it was stopped. Requires: a request without a problem.
[[nodiscard]] bool computeQuantiles(const OutputTable& table, const QuantileRequest& request, QuantileTable& quantiles,
                                    std::string& message, const Progress& progress = {});

// "1 %", "97.5 %"
std::string percentText(double share);
// What should be said of intervals when the runs are no independent draws, by the number of the sampling method; empty
// for random ones.
std::string intervalCaution(std::int32_t methodId);

}  // namespace tarvex
