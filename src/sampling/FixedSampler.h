#pragma once

#include <vector>

#include "base/sampValues.h"
#include "sampling/Sampler.h"

namespace tarvex {

// A sample typed by the user, run by run: final factor values, not numbers in the design space, so the value pass
// leaves them alone. `numSamples` is the number of typed runs.
class FixedSampler : public Sampler {
 public:
  FixedSampler() : Sampler(kFixed, 0, 1) {}
  std::unique_ptr<Sampler> clone(std::string& message) const override;

  // How the section lists the table: 0 by run, 1 by factor.
  [[nodiscard]] bool setOrder(std::int32_t order) { return values_.setOrder(order); }
  void clearRows();
  // Appends a run of numFactors values; false, with the reason in errorText, when the store refuses or the count is
  // another.
  [[nodiscard]] bool addRow(const std::vector<double>& row);
  // A row per run, a column per factor of the list.
  const sampValues& values() const { return values_; }
  // Run i; empty when there is none.
  std::vector<double> copyRow(std::int32_t i) const;

  // Another count than before drops the rows.
  void setNumFactors(std::int32_t count) override;
  void writeSection(TextWriter& out) const override;

 private:
  bool fill(double target, sampValues& store, FactorList& factors) override;
  bool readItems(TextReader& in) override;
  void restoreDefaults() override;

  sampValues values_;
};

}  // namespace tarvex
