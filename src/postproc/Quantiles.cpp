#include "postproc/Quantiles.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "base/NumberText.h"
#include "factors/NumericRoutines.h"
#include "sampling/Sampler.h"

namespace tarvex {

namespace {

constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

// I_x(a, b), a, b > 0.
double betaRatio(double x, double a, double b) {
  double p = kNoNumber;
  double q = kNoNumber;
  int status = 0;
  double bound = 0.0;
  cdfBeta(1, p, q, x, 1.0 - x, a, b, status, bound);
  return p;
}

// The probability of at most k successes of n.
double atMost(std::int64_t k, std::int64_t n, double probability) {
  if (k < 0) return 0.0;
  if (k >= n) return 1.0;
  return betaRatio(1.0 - probability, static_cast<double>(n - k), static_cast<double>(k) + 1.0);
}

// The smallest k of 0 to n for which at most k of n are as likely as `level`, or more so.
std::int64_t binomialQuantile(std::int64_t n, double probability, double level) {
  std::int64_t below = -1;
  std::int64_t from = n;
  while (from - below > 1) {
    const std::int64_t middle = below + (from - below) / 2;
    (atMost(middle, n, probability) >= level ? from : below) = middle;
  }
  return from;
}

// The x at which I_x(a, b) is `level`: halved until its ends are neighbours.
double betaQuantile(double level, double a, double b) {
  double low = 0.0;
  double high = 1.0;
  while (true) {
    const double middle = low + (high - low) / 2.0;
    if (middle <= low || middle >= high) return middle;
    (betaRatio(middle, a, b) < level ? low : high) = middle;
  }
}

}  // namespace

OrderedRuns::OrderedRuns(std::vector<double> values) : values_(std::move(values)) {
  missing_ = static_cast<std::int64_t>(std::erase_if(values_, [](double value) { return std::isnan(value); }));
  std::ranges::sort(values_);
}

Estimate OrderedRuns::quantile(double share, double confidence) const {
  if (values_.empty()) return {kNoNumber};
  const std::int64_t n = count();
  const double place = share * static_cast<double>(n - 1);
  const auto before = static_cast<std::size_t>(std::min(std::floor(place), static_cast<double>(n - 1)));
  const std::size_t after = std::min(before + 1, values_.size() - 1);
  const double part = place - static_cast<double>(before);
  // Where both are alike nothing is added, so that infinite values stay what they are.
  Estimate estimate{values_[before] == values_[after] || part == 0.0
                        ? values_[before]
                        : values_[before] + part * (values_[after] - values_[before])};
  // Of n values, at most `low` - 1 lie below the true quantile with a probability of no more than the tail's.
  const double tail = (1.0 - confidence) / 2.0;
  std::int64_t low = binomialQuantile(n, share, tail);
  if (low < n && atMost(low, n, share) <= tail) ++low;
  const std::int64_t high = binomialQuantile(n, share, 1.0 - tail) + 1;
  if (low >= 1) estimate.lower = values_[static_cast<std::size_t>(low - 1)];
  if (high <= n) estimate.upper = values_[static_cast<std::size_t>(high - 1)];
  return estimate;
}

Estimate OrderedRuns::exceedance(double threshold, double confidence) const {
  if (values_.empty() || std::isnan(threshold)) return {kNoNumber};
  const auto above = static_cast<double>(values_.end() - std::upper_bound(values_.begin(), values_.end(), threshold));
  const auto n = static_cast<double>(count());
  const double tail = (1.0 - confidence) / 2.0;
  return {above / n, above == 0.0 ? 0.0 : betaQuantile(tail, above, n - above + 1.0),
          above == n ? 1.0 : betaQuantile(1.0 - tail, above + 1.0, n - above)};
}

std::string QuantileRequest::problem() const {
  for (const double share : shares)
    if (!(share >= 0.0 && share <= 1.0)) return "A quantile lies between 0 and 100 percent: " + percentText(share);
  for (const double threshold : thresholds)
    if (std::isnan(threshold)) return "The value that is exceeded is a number: nan";
  if (!(confidence > 0.0 && confidence < 1.0))
    return "The confidence of an interval lies between 0 and 1: " + numberText(confidence);
  return "";
}

VariableQuantiles quantilesOf(const OrderedRuns& runs, const QuantileRequest& request) {
  VariableQuantiles made{runs.count(), runs.missing(), {}, {}};
  for (const double share : request.shares) made.quantiles.push_back(runs.quantile(share, request.confidence));
  for (const double threshold : request.thresholds)
    made.exceedances.push_back(runs.exceedance(threshold, request.confidence));
  return made;
}

bool computeQuantiles(const OutputTable& table, const QuantileRequest& request, QuantileTable& quantiles,
                      std::string& message, const Progress& progress) {
  QuantileTable made{request, {}};
  std::vector<double> column;
  for (std::int32_t variable = 0; variable < table.columns(); ++variable) {
    if (!progress.report(static_cast<double>(variable) / table.columns())) {
      message = "The computation was stopped.";
      return false;
    }
    if (!table.getColumn(variable, column)) {
      message = table.errorText();
      return false;
    }
    made.variables.push_back(quantilesOf(OrderedRuns(std::move(column)), request));
  }
  quantiles = std::move(made);
  return true;
}

std::string percentText(double share) {
  constexpr int kDigits = 10;
  constexpr double kPercent = 100.0;
  return numberText(share * kPercent, kDigits) + " %";
}

std::string intervalCaution(std::int32_t methodId) {
  if (methodId == kRandom) return "";
  return "The intervals are those of independent draws, which the runs of this design are not: take them as a guide.";
}

}  // namespace tarvex
