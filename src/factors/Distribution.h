#pragma once

#include <vector>

#include "factors/Factor.h"

namespace tarvex {

// A point of the inverse table: P(X <= x) is p.
struct TablePoint {
  double x;
  double p;
};

// A sampled factor: its moments, its cumulative, and the way from a uniform number to a value of it.
class Distribution : public Factor {
 public:
  virtual double mean() const = 0;
  virtual double stdDev() const = 0;
  virtual double cumulative(double x) const = 0;  // P(X <= x); -1 where the numeric routine refuses
  virtual double density(double x) const = 0;

  // Fills `table` with 101 points at steps of one percent. False when the search gives up; the table is then empty.
  // Each call must be followed by clearTable().
  [[nodiscard]] virtual bool prepareInverse();
  // The value at the cumulative probability u in (0, 1). Requires: a prepared table.
  virtual double inverse(double u) const;
  void clearTable() { table.clear(); }

  std::vector<TablePoint> table;

 protected:
  Distribution() = default;
  Distribution(const Distribution& other) : Factor(other) {}
};

}  // namespace tarvex
