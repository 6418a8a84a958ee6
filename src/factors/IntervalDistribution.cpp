#include "factors/IntervalDistribution.h"

#include <algorithm>
#include <cmath>

#include "base/NumberText.h"
#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "factors/lineEnd.h"

namespace tarvex {
namespace {

constexpr std::size_t kMaxIntervals = 10000;    // the list may pass it by one before it is full
constexpr double kWeightTolerance = 1e-13;      // of a sum of weights
constexpr double kRounding = 1e-6;              // what six digits may cost a weight
constexpr std::uint64_t kShortestInterval = 6;  // bytes: three digits, two tabs, a line end
constexpr const char* kWeightError = "Weight value error";
constexpr const char* kSumError = "Sum of weights not equal to 1";

bool isWeight(double weight) {
  return weight > 0.0 && weight <= 1.0;
}

}  // namespace

IntervalDistribution::IntervalDistribution(const IntervalDistribution& other) : Distribution(other) {
  intervals_.reserve(other.count());
  for (const auto& interval : other.intervals_) {
    std::unique_ptr<Interval> copy = interval->clone();
    if (!isWeight(copy->weight)) {
      copy->weight = 1.0;
      copy->errorText = kWeightError;
    }
    store(std::move(copy));
  }
}

Interval* IntervalDistribution::intervalAt(std::size_t i) {
  dropIndex();
  return i < count() ? intervals_[i].get() : nullptr;
}

void IntervalDistribution::removeAt(std::size_t i) {
  dropIndex();
  if (i < count()) intervals_.erase(intervals_.begin() + static_cast<std::ptrdiff_t>(i));
}

void IntervalDistribution::clear() {
  dropIndex();
  intervals_.clear();
}

void IntervalDistribution::swapIntervals(IntervalDistribution& other) {
  dropIndex();
  other.dropIndex();
  intervals_.swap(other.intervals_);
}

void IntervalDistribution::dropIndex() {
  index_.clear();
  listChanged();
}

const IntervalIndex& IntervalDistribution::index() const {
  index_.extend(intervals_);
  return index_;
}

bool IntervalDistribution::checkWeights() {
  return accept(std::fabs(weightSum() - 1.0) < kWeightTolerance ? nullptr : kSumError);
}

void IntervalDistribution::rescaleWeights() {
  const double sum = weightSum();
  if (sum == 1.0 || !(std::fabs(sum - 1.0) <= kRounding * static_cast<double>(count()))) return;
  dropIndex();
  for (const auto& interval : intervals_) interval->weight /= sum;
}

std::string IntervalDistribution::parameterProblem() const {
  const std::string kind = holdsPoints() ? "point" : "interval";
  if (intervals_.empty()) return "No " + kind + "s stored";
  for (std::size_t i = 0; i < count(); ++i) {
    const Interval& interval = *intervals_[i];
    const char* problem = roomProblem(i);
    if (problem == nullptr && !holdsPoints()) problem = interval.boundsProblem(interval.left, interval.right);
    if (problem == nullptr) problem = placeProblem(interval, i);
    if (problem == nullptr && !isWeight(interval.weight)) problem = kWeightError;
    if (problem == nullptr && !(std::isfinite(interval.left) && (holdsPoints() || std::isfinite(interval.right))))
      problem = "bound that is not a finite number";
    if (problem != nullptr) return kind + ' ' + std::to_string(i + 1) + ": " + problem;
  }
  const double sum = weightSum();
  if (std::fabs(sum - 1.0) <= kRounding * static_cast<double>(count())) return {};
  return std::string(kSumError) + ": " + numberText(sum, 15);
}

std::unique_ptr<Interval> IntervalDistribution::newInterval() const {
  return std::make_unique<Interval>();
}

const char* IntervalDistribution::roomProblem(std::size_t place) const {
  return place <= kMaxIntervals ? nullptr : "Too much intervals stored";
}

IntervalDistribution::Moments IntervalDistribution::stableMoments() const {
  std::vector<Moments> moments;
  double mean = 0.0;
  for (const auto& interval : intervals_) {
    moments.push_back(momentsOf(*interval));
    mean += moments.back().mean * interval->weight;
  }
  double unit = 0.0;  // so that no square leaves the range of doubles
  for (const Moments& part : moments) unit = std::max({unit, std::fabs(part.mean - mean), part.stdDev});
  if (unit == 0.0) return {mean, 0.0};
  double sum = 0.0;
  for (std::size_t i = 0; i < moments.size(); ++i) {
    const double distance = (moments[i].mean - mean) / unit;
    const double within = moments[i].stdDev / unit;
    sum += intervals_[i]->weight * (distance * distance + within * within);
  }
  return {mean, unit * std::sqrt(sum)};
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
  in.expect(holdsPoints() ? "the number of points" : "the number of intervals") >> rows;
  if (in.ok() && rows < 1) in.refuse("the number of rows must be at least 1, not " + std::to_string(rows));
  if (!readLineEnd(in) || !in.checkCount(rows, kShortestInterval)) return;
  for (std::int32_t row = 0; row < rows && in.ok(); ++row) {
    std::unique_ptr<Interval> interval = newInterval();
    in.expect(holdsPoints() ? "the value of a point" : "the left end of an interval") >> interval->left;
    in.expect("the right end of an interval") >> interval->right;
    in.expect("a weight") >> interval->weight;
    store(std::move(interval));
  }
  rescaleWeights();
}

}  // namespace tarvex
