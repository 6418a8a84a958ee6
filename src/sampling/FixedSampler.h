#pragma once

#include <vector>

#include "base/sampValues.h"
#include "sampling/Sampler.h"

namespace tarvex {

// A sample typed by the user, run by run: final factor values, not numbers in the design space, so the value pass
// leaves them alone.
class FixedSampler : public Sampler {
 public:
  FixedSampler();
  std::unique_ptr<Sampler> clone() const override;

  // A row per run, a column per factor of the list.
  const sampValues& values() const { return values_; }
  void clearRows();
  // Appends a run of numFactors values; false when the store refuses or the count is another.
  bool addRow(const std::vector<double>& row);
  // Run i; empty when there is none.
  std::vector<double> copyRow(std::int32_t i) const;
  // How the section lists the table: 0 by run, 1 by factor.
  bool setOrder(std::int32_t order) { return values_.setOrder(order); }

  // Another count than before drops the rows.
  void setNumFactors(std::int32_t count) override;
  double generate(double targetPercent, sampValues& store, FactorList& factors) override;

  void writeSection(TextWriter& out) const override;
  void readSection(TextReader& in) override;

 private:
  bool readItems(TextReader& in);

  sampValues values_;
};

}  // namespace tarvex
