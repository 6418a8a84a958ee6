#pragma once

#include <memory>
#include <vector>

#include "factors/Distribution.h"
#include "factors/Interval.h"

namespace tarvex {

// What the distributions over a list of weighted intervals or points share: the list, its checks and its text form.
class IntervalDistribution : public Distribution {
 public:
  std::size_t count() const { return intervals_.size(); }
  // Null past the end.
  Interval* intervalAt(std::size_t i) { return i < count() ? intervals_[i].get() : nullptr; }
  const Interval* intervalAt(std::size_t i) const { return i < count() ? intervals_[i].get() : nullptr; }
  void removeAt(std::size_t i);  // nothing past the end
  void clear() { intervals_.clear(); }

  // Swaps the whole list with another one's.
  void swapIntervals(IntervalDistribution& other) { intervals_.swap(other.intervals_); }
  // True where an interval stands for a point, its `left`.
  virtual bool holdsPoints() const { return false; }

  // True when the weights sum to 1 within 1e-13.
  bool checkWeights();
  // Scales the weights of a file to the sum 1 where they miss it by no more than their six digits explain.
  void rescaleWeights();

  // An interval of the kind that the class holds, with its defaults.
  virtual std::unique_ptr<Interval> newInterval() const;
  // Appends where the class's rule allows it; false with the reason in errorText.
  virtual bool append(std::unique_ptr<Interval> interval) = 0;

 protected:
  IntervalDistribution(const char* type, const char* defaultName) : Distribution(type, defaultName) {}
  IntervalDistribution(const IntervalDistribution& other);

  void store(std::unique_ptr<Interval> interval) { intervals_.push_back(std::move(interval)); }
  bool checkRoom();
  double weightSum() const;

  void writeParameters(TextWriter& out) const override;
  void readParameters(TextReader& in) override;

  std::vector<std::unique_ptr<Interval>> intervals_;
};

}  // namespace tarvex
