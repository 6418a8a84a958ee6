#pragma once

#include "factors/Distribution.h"

namespace tarvex {

// A column of an imported sample that has no distribution: everything of it is 0. A factor list with one is written but
// not read back.
class Dummy : public Distribution {
 public:
  Dummy() : Distribution("Dummy", "nonameDummy") {}
  std::unique_ptr<Factor> clone() const override { return std::unique_ptr<Factor>(new Dummy(*this)); }
  std::int32_t getType() const override { return 100; }

  double mean() const override { return 0.0; }
  double stdDev() const override { return 0.0; }
  double cumulative(double) const override { return 0.0; }
  double density(double) const override { return 0.0; }

  bool prepareInverse() override { return true; }
  double inverse(double) const override { return 0.0; }
  bool needsTable() const override { return false; }

 protected:
  Dummy(const Dummy&) = default;
};

}  // namespace tarvex
