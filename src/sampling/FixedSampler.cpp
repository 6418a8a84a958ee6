#include "sampling/FixedSampler.h"

#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "factors/FactorList.h"
#include "sampling/designRows.h"

namespace tarvex {

FixedSampler::FixedSampler() : Sampler(kFixed, 0, 1) {}

std::unique_ptr<Sampler> FixedSampler::clone() const {
  return std::make_unique<FixedSampler>(*this);
}

void FixedSampler::clearRows() {
  values_.clear();
  // Without factors the table has no width.
  static_cast<void>(values_.allocate(numFactors));
}

bool FixedSampler::addRow(const std::vector<double>& row) {
  if (static_cast<std::int32_t>(row.size()) != values_.columns() || row.empty()) return false;
  return values_.addRow(row.data()) != 0;
}

std::vector<double> FixedSampler::copyRow(std::int32_t i) const {
  std::vector<double> row(static_cast<std::size_t>(values_.columns()));
  if (!values_.getRow(i, row.data())) row.clear();
  return row;
}

void FixedSampler::setNumFactors(std::int32_t count) {
  numFactors = count;
  if (values_.columns() != count) clearRows();
}

double FixedSampler::generate(double /*targetPercent*/, sampValues& store, FactorList& factors) {
  if (!hasSamples()) return -1.0;
  if (values_.columns() != factors.factorCount()) {
    errorText = "The fixed samples have another number of factors than the list";
    return -1.0;
  }
  if (!store.assign(values_)) {
    errorText = store.errorText();
    return -1.0;
  }
  setRunProgress(numSamples);
  return progress;
}

void FixedSampler::writeSection(TextWriter& out) const {
  out << numSamples << '\n' << numFactors << '\n';
  values_.write(out);
}

void FixedSampler::readSection(TextReader& in) {
  if (!readItems(in)) {
    in.setFail();
    *this = FixedSampler();
  }
}

bool FixedSampler::readItems(TextReader& in) {
  in >> numSamples >> numFactors;
  if (in.fail() || !noneNegative({numSamples, numFactors})) return false;
  values_.read(in);
  return in.ok() && values_.columns() == numFactors;
}

}  // namespace tarvex
