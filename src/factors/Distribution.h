#pragma once

#include <cstddef>
#include <vector>

#include "factors/Factor.h"
#include "factors/InverseCells.h"

namespace tarvex {

// A point of the inverse table: P(X <= x) is p.
struct TablePoint {
  double x;
  double p;
};

// When the bisection of a table's cell ends: where its cumulatives differ by no more than `tolerance` of the lower one,
// or the passes are over.
struct InverseRule {
  double tolerance;
  int maxPasses;
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
  void clearTable();

  // The value pass, whatever the kind: whether value() needs a prepared table, and the value for a uniform number.
  virtual bool needsTable() const { return true; }
  virtual double value(double u) const { return inverse(u); }
  // value() of each of `count` numbers, bit by bit, faster the more there are between two calls of clearTable(), on all
  // cores where there are enough. `x` may be `u`.
  void values(const double* u, double* x, std::size_t count);

  virtual InverseRule inverseRule() const;  // of inverse()
  // Halves the span of table[cell] to table[cell + 1] around the target until the rule holds or the ends are
  // neighbouring doubles. The middle of what is left.
  double bisect(const InverseCells::Search& search, const InverseRule& rule) const;
  // False where the cumulative has a kink between two values.
  virtual bool isSmooth(double /*low*/, double /*high*/) const { return true; }

  std::vector<TablePoint> table;

 protected:
  Distribution(const char* type, const char* defaultName) : Factor(type, defaultName) {}
  Distribution(const Distribution& other) : Factor(other) {}  // without a table

  // What inverse() bisects for u; false where it gives `x` without. Requires a table.
  virtual bool searchFor(double u, InverseCells::Search& search, double& x) const;
  bool hasTable() const;

 private:
  void fill(InverseCells& cells, const double* u, double* x, std::size_t count) const;

  std::vector<InverseCells> cells_;  // of the table, one a core
};

}  // namespace tarvex
