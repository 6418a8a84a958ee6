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

  // Fills `table` with 101 points at steps of one percent. False when the search gives up or meets a cumulative that is
  // no number; the table is then empty. Each call must be followed by clearTable().
  [[nodiscard]] virtual bool prepareInverse();
  // The value at the cumulative probability u in (0, 1), from a prepared table; nan without one.
  virtual double inverse(double u) const;
  void clearTable() { table.clear(); }

  // The value pass, whatever the kind: whether value() needs a prepared table, and the value for a uniform number.
  virtual bool needsTable() const { return true; }
  virtual double value(double u) const { return inverse(u); }

  std::vector<TablePoint> table;

 protected:
  Distribution(const char* type, const char* defaultName) : Factor(type, defaultName) {}
  Distribution(const Distribution& other) : Factor(other) {}

  bool hasTable() const;
  // Halves the span of table[i] to table[i + 1] until its cumulatives differ by no more than `tolerance` of the lower
  // one, its ends are neighbouring doubles or the passes are over. The middle of what is left.
  double bisectTable(std::size_t i, double target, double tolerance, int maxPasses) const;
};

}  // namespace tarvex
