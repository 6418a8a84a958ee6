#include "postproc/UaStats.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "base/TextRules.h"
#include "postproc/CriticalValues.h"
#include "postproc/MeasureSupport.h"

namespace tarvex {

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kNoExtreme = 1e308;  // minimum, and negated maximum, of a column without a number

// Shares of the progress, and the work on a run that they follow from.
constexpr double kMomentsDone = 0.6;
constexpr double kLinearDone = 0.7;
constexpr std::int64_t kOperationsAPower = 100;
constexpr std::int64_t kOperationsALogarithm = 30;

// Counts one run per value in 100 bins from `low` to `high` and one for `high` itself. False when stopped.
bool countRuns(const std::vector<double>& values, double low, double high, bool logarithmic, const Progress& progress,
               Histogram& table) {
  const double range = high - low;
  for (int k = 0; k < kHistogramEntries; ++k) table[static_cast<std::size_t>(k)].left = low + range * k * 0.01;
  WorkPace pace(progress, static_cast<std::int64_t>(values.size()), kOperationsALogarithm);
  for (const double value : values) {
    if (!pace.step()) return false;
    const double x = logarithmic ? std::log(value) : value;
    if (std::isnan(x)) continue;
    const double bin = range == 0.0 ? 0.0 : (x - low) * 100.0 / range;
    // An infinite range has no bins; the comparison also passes over what is not a number.
    if (bin >= 0.0 && bin < kHistogramEntries) table[static_cast<std::size_t>(bin)].count += 1.0;
  }
  return true;
}

// The first entry whose edge `x` is not above; kHistogramEntries if there is none.
int firstEdgeFrom(const Histogram& table, double x) {
  int k = 0;
  while (k < kHistogramEntries && x > table[static_cast<std::size_t>(k)].left) ++k;
  return k;
}

bool isLevel(double level) {
  return level > 0.0 && level < 1.0;
}

}  // namespace

void UaStats::clear() {
  sampleSize_ = 0;
  names_.clear();
  for (auto* values : {&minima_, &maxima_, &means_, &stds_, &skewness_, &kurtosis_}) values->clear();
  linearHistograms_.clear();
  logHistograms_.clear();
}

bool UaStats::compute(const std::vector<std::string>& names, const OutputTable& table, const Progress& progress) {
  errorText = "No errors";
  for (const std::string& name : names)
    if (const std::string problem = UaStats::kNameRule.problem(name); !problem.empty()) {
      errorText = problem;
      return false;
    }
  UaStats next;
  next.tchebyConfidence = tchebyConfidence;
  next.kolmogorovConfidence = kolmogorovConfidence;
  const auto count = static_cast<std::size_t>(table.columns());
  next.sampleSize_ = table.rows();
  next.names_ = names;
  next.names_.resize(count);
  for (auto* values : {&next.minima_, &next.maxima_, &next.means_, &next.stds_, &next.skewness_, &next.kurtosis_})
    values->resize(count);
  next.linearHistograms_.resize(count);
  next.logHistograms_.resize(count);
  std::vector<double> column;
  for (std::size_t variable = 0; variable < count; ++variable) {
    const auto done = [count](std::size_t v) { return static_cast<double>(v) / static_cast<double>(count); };
    const Progress part = progress.part(done(variable), done(variable + 1));
    if (!table.getColumn(static_cast<std::int32_t>(variable), column) ||
        !next.computeVariable(variable, column, part)) {
      errorText = progress.stopped() ? "The computation was stopped." : table.errorText();
      return false;
    }
  }
  *this = std::move(next);
  return true;
}

bool UaStats::computeVariable(std::size_t variable, const std::vector<double>& column, const Progress& progress) {
  const auto runs = static_cast<double>(column.size());
  double low = kNoExtreme;
  double high = -kNoExtreme;
  double sum = 0.0;
  for (const double x : column) {
    if (x > high) high = x;
    if (x < low) low = x;
    sum += x;
  }
  const double mean = sum / runs;
  double squares = 0.0;
  double cubes = 0.0;
  double fourths = 0.0;
  const Progress powers = progress.part(0.0, kMomentsDone);
  WorkPace pace(powers, static_cast<std::int64_t>(column.size()), kOperationsAPower);
  for (const double x : column) {
    if (!pace.step()) return false;
    const double deviation = x - mean;
    squares += deviation * deviation;
    cubes += std::pow(deviation, 3.0);
    fourths += std::pow(deviation, 4.0);
  }
  double deviation = std::sqrt(squares / runs);
  if (low == high && !std::isnan(mean)) deviation = 0.0;  // not the rounding of the mean
  // Kept: N below the deviation and N - 1 below the higher moments; reports have always shown these.
  skewness_[variable] = cubes / ((runs - 1.0) * std::pow(deviation, 3.0));
  kurtosis_[variable] = fourths / ((runs - 1.0) * std::pow(deviation, 4.0)) - 3.0;
  minima_[variable] = low;
  maxima_[variable] = high;
  means_[variable] = mean;
  stds_[variable] = deviation;
  const Progress linear = progress.part(kMomentsDone, kLinearDone);
  const Progress logarithmic = progress.part(kLinearDone, 1.0);
  return countRuns(column, low, high, false, linear, linearHistograms_[variable]) &&
         (!(low > 0.0) ||
          countRuns(column, std::log(low), std::log(high), true, logarithmic, logHistograms_[variable]));
}

// Infinities are no numbers below or above the first extremes, so that these stay; the other extreme is then infinite.
double UaStats::minimum(std::int32_t variable) const {
  const double low = valueOf(minima_, variable);
  if (!knows(variable) || minima_.empty() || low < kNoExtreme) return low;
  const double high = valueOf(maxima_, variable);
  return high >= kNoExtreme ? high : kNaN;
}

double UaStats::maximum(std::int32_t variable) const {
  const double high = valueOf(maxima_, variable);
  if (!knows(variable) || maxima_.empty() || high > -kNoExtreme) return high;
  const double low = valueOf(minima_, variable);
  return low <= -kNoExtreme ? low : kNaN;
}

bool UaStats::hasHistogram(std::int32_t variable, HistogramScale scale) const {
  const Histogram* table = scale == kLogScale ? logHistogram(variable) : linearHistogram(variable);
  return table != nullptr &&
         std::ranges::all_of(*table, [](const HistogramEntry& bin) { return std::isfinite(bin.left); }) &&
         std::ranges::any_of(*table, [](const HistogramEntry& bin) { return bin.count > 0.0; });
}

double UaStats::valueOf(const std::vector<double>& values, std::int32_t variable) const {
  return variable >= 0 && static_cast<std::size_t>(variable) < values.size()
             ? values[static_cast<std::size_t>(variable)]
             : kUnavailable;
}

const Histogram* UaStats::linearHistogram(std::int32_t variable) const {
  return knows(variable) ? &linearHistograms_[static_cast<std::size_t>(variable)] : nullptr;
}

const Histogram* UaStats::logHistogram(std::int32_t variable) const {
  return knows(variable) ? &logHistograms_[static_cast<std::size_t>(variable)] : nullptr;
}

const std::string* UaStats::name(std::int32_t variable) const {
  return knows(variable) ? &names_[static_cast<std::size_t>(variable)] : nullptr;
}

bool UaStats::setTchebyConfidence(double level) {
  if (!isLevel(level)) return false;
  tchebyConfidence = level;
  return true;
}

bool UaStats::setKolmogorovConfidence(double level) {
  if (!isLevel(level)) return false;
  kolmogorovConfidence = level;
  return true;
}

std::int32_t UaStats::countedRuns(std::int32_t variable) const {
  double total = 0.0;
  for (const HistogramEntry& entry : linearHistograms_[static_cast<std::size_t>(variable)])
    total = std::trunc(total + entry.count);
  // A file's counts may be anything.
  return total > 0.0 && total <= 2147483647.0 ? static_cast<std::int32_t>(total) : 0;
}

double UaStats::tchebyBound(std::int32_t variable) const {
  if (!knows(variable) || stds_.empty()) return kUnavailable;
  const double runs = countedRuns(variable);
  return std::sqrt(1.0 / (1.0 - tchebyConfidence)) * std(variable) / std::sqrt(runs);
}

double UaStats::tTestBound(std::int32_t variable) const {
  if (!knows(variable) || stds_.empty()) return kUnavailable;
  const std::int32_t runs = countedRuns(variable);
  // Kept: as many degrees of freedom as runs, and the level of the other bound, rounded to single precision.
  const double quantile = studentQuantile(runs, static_cast<float>(tchebyConfidence));
  if (quantile < 0.0) return -1.0;
  return quantile * std(variable) / std::sqrt(static_cast<double>(runs));
}

double UaStats::intervalProbability(double a, double b, std::int32_t variable, int scale) const {
  if (!knows(variable) || minima_.empty() || maxima_.empty()) return kUnavailable;
  const bool logarithmic = scale == kLogScale;
  const Histogram& linear = linearHistograms_[static_cast<std::size_t>(variable)];
  const Histogram& table = logarithmic ? logHistograms_[static_cast<std::size_t>(variable)] : linear;
  const double low = logarithmic ? std::log(minimum(variable)) : minimum(variable);
  const double high = logarithmic ? std::log(maximum(variable)) : maximum(variable);
  if (!(b > a) || !(a < high) || !(b > low)) return 0.0;

  const double perUnit = 100.0 / (high - low);
  const double runs = countedRuns(variable);
  const int i = firstEdgeFrom(table, a);
  const int j = firstEdgeFrom(table, b);
  const auto edge = [&table](int k) { return table[static_cast<std::size_t>(k)].left; };
  const auto count = [&table](int k) { return k < 0 ? 0.0 : table[static_cast<std::size_t>(k)].count; };
  // Kept: two tests read the linear table's edges on the logarithmic scale too. Past the last edge they don't hold.
  const auto linearEdgeIs = [&linear](int k, auto test) {
    return k < kHistogramEntries && test(linear[static_cast<std::size_t>(k)].left);
  };

  double inside = 0.0;
  for (int k = i; k < j; ++k) inside += count(k);
  if (i == j || (i == j - 1 && linearEdgeIs(i, [a](double left) { return left == a; })))
    return ((b - a) * perUnit * count(i - 1) + inside) / runs;
  if (i > 0 && i < kHistogramEntries && a < edge(i)) inside += (edge(i) - a) * perUnit * count(i - 1);
  // Kept: the partial last bin is added to its own whole count in the sum.
  if (linearEdgeIs(j, [b](double left) { return b < left; }))
    return (perUnit * (b - edge(j - 1)) * count(j - 1) + inside) / runs;
  return inside / runs;
}

}  // namespace tarvex
