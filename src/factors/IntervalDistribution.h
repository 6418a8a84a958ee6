#pragma once

#include <memory>
#include <vector>

#include "factors/Distribution.h"
#include "factors/Interval.h"
#include "factors/IntervalIndex.h"

namespace tarvex {

// What the distributions over a list of weighted intervals or points share: the list, its checks and its text form.
class IntervalDistribution : public Distribution {
 public:
  std::size_t count() const { return intervals_.size(); }
  // Null past the end. What the first one hands out may be changed until the next call of another operation.
  Interval* intervalAt(std::size_t i);
  const Interval* intervalAt(std::size_t i) const { return i < count() ? intervals_[i].get() : nullptr; }
  void removeAt(std::size_t i);  // nothing past the end
  void clear();

  // Swaps the whole list with another one's.
  void swapIntervals(IntervalDistribution& other);
  // True where an interval stands for a point, its `left`.
  virtual bool holdsPoints() const { return false; }

  // True when the weights sum to 1 within 1e-13.
  [[nodiscard]] bool checkWeights();
  // Scales the weights of a file to the sum 1 where they miss it by no more than their six digits explain.
  void rescaleWeights();
  // Besides what Factor says: a list that is empty, over its limit, out of order or with weights that are none.
  std::string parameterProblem() const override;

  // An interval of the kind that the class holds, with its defaults.
  virtual std::unique_ptr<Interval> newInterval() const;
  // Appends where the class's rule allows it; false with the reason in errorText.
  [[nodiscard]] virtual bool append(std::unique_ptr<Interval> interval) = 0;

 protected:
  // Mean and standard deviation, of an interval or of the whole.
  struct Moments {
    double mean;
    double stdDev;
  };

  IntervalDistribution(const char* type, const char* defaultName) : Distribution(type, defaultName) {}
  IntervalDistribution(const IntervalDistribution& other);

  void store(std::unique_ptr<Interval> interval) { intervals_.push_back(std::move(interval)); }
  // What append() asks of an interval behind the first `place` ones of the list; null when nothing stands against it.
  const char* roomProblem(std::size_t place) const;
  virtual const char* placeProblem(const Interval& interval, std::size_t place) const = 0;

  double weightSum() const { return index().weight(); }
  virtual Moments momentsOf(const Interval& interval) const = 0;
  // From the moments of the intervals, around the mean: the stable form of all kinds.
  Moments stableMoments() const;

  const IntervalIndex& index() const;

  void writeParameters(TextWriter& out) const override;
  void readParameters(TextReader& in) override;

  std::vector<std::unique_ptr<Interval>> intervals_;

 private:
  virtual void listChanged() {}
  void dropIndex();

  mutable IntervalIndex index_;  // of the list or of its beginning
};

}  // namespace tarvex
