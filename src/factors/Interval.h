#pragma once

#include <cmath>
#include <memory>
#include <string>

namespace tarvex {

// An interval of a `Uniform` with its probability. A point of a `Discrete` is one too: `left` is its value.
class Interval {
 public:
  Interval() = default;
  Interval(double leftBound, double rightBound, double probability = 1.0)
      : left(leftBound), right(rightBound), weight(probability) {}
  virtual ~Interval() = default;
  Interval& operator=(const Interval&) = delete;
  // The same bounds and weight, no error.
  virtual std::unique_ptr<Interval> clone() const;

  // False, with the bounds as they were, unless left < right.
  [[nodiscard]] bool setBounds(double newLeft, double newRight);
  // The text of setBounds() for bounds that it refuses; null for others.
  virtual const char* boundsProblem(double newLeft, double newRight) const;

  double left = 0.0;
  double right = 1.0;
  double weight = 1.0;
  std::string errorText;

 protected:
  Interval(const Interval& other) : left(other.left), right(other.right), weight(other.weight) {}
};

// An interval of a `LogUniform`: its bounds are positive.
class LogInterval : public Interval {
 public:
  LogInterval() : Interval(1.0, std::exp(1.0)) {}
  LogInterval(double leftBound, double rightBound, double probability = 1.0)
      : Interval(leftBound, rightBound, probability) {}

  std::unique_ptr<Interval> clone() const override;
  const char* boundsProblem(double newLeft, double newRight) const override;

 protected:
  LogInterval(const LogInterval&) = default;
};

}  // namespace tarvex
