#include "factors/IntervalDistribution.h"

#include <cmath>

#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "factors/lineEnd.h"

namespace tarvex {
namespace {

constexpr std::size_t kMaxIntervals = 10000;    // the list may pass it by one before it is full
constexpr double kWeightTolerance = 1e-13;      // of a sum of weights
constexpr double kRounding = 1e-6;              // what six digits may cost a weight
constexpr std::uint64_t kShortestInterval = 6;  // bytes: three digits, two tabs, a line end

}  // namespace

IntervalDistribution::IntervalDistribution(const IntervalDistribution& other) : Distribution(other) {
  intervals_.reserve(other.count());
  for (const auto& interval : other.intervals_) {
    std::unique_ptr<Interval> copy = interval->clone();
    if (!(copy->weight > 0.0 && copy->weight <= 1.0)) {
      copy->weight = 1.0;
      copy->errorText = "Weight value error";
    }
    store(std::move(copy));
  }
}

void IntervalDistribution::removeAt(std::size_t i) {
  if (i < count()) intervals_.erase(intervals_.begin() + static_cast<std::ptrdiff_t>(i));
}

bool IntervalDistribution::checkWeights() {
  return accept(std::fabs(weightSum() - 1.0) < kWeightTolerance, "Sum of weights not equal to 1");
}

void IntervalDistribution::rescaleWeights() {
  const double sum = weightSum();
  if (sum == 1.0 || !(std::fabs(sum - 1.0) <= kRounding * static_cast<double>(count()))) return;
  for (const auto& interval : intervals_) interval->weight /= sum;
}

std::unique_ptr<Interval> IntervalDistribution::newInterval() const {
  return std::make_unique<Interval>();
}

bool IntervalDistribution::checkRoom() {
  return accept(count() <= kMaxIntervals, "Too much intervals stored");
}

double IntervalDistribution::weightSum() const {
  double sum = 0.0;
  for (const auto& interval : intervals_) sum += interval->weight;
  return sum;
}

void IntervalDistribution::writeParameters(TextWriter& out) const {
  out << '\t' << count() << '\n';
  for (const auto& interval : intervals_) {
    out << interval->left << '\t' << interval->right << '\t' << interval->weight << '\n';
  }
}

void IntervalDistribution::readParameters(TextReader& in) {
  clear();
  std::int32_t rows = 0;
  in >> rows;
  if (readLineEnd(in) && rows < 1) in.setFail();
  in.checkCount(rows, kShortestInterval);
  for (std::int32_t row = 0; row < rows && in.ok(); ++row) {
    std::unique_ptr<Interval> interval = newInterval();
    in >> interval->left >> interval->right >> interval->weight;
    store(std::move(interval));
  }
  rescaleWeights();
}

}  // namespace tarvex
