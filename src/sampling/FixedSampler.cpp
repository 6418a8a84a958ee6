#include "sampling/FixedSampler.h"

#include <iterator>

#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "factors/FactorList.h"

namespace tarvex {

std::unique_ptr<Sampler> FixedSampler::clone(std::string& message) const {
  auto copy = std::make_unique<FixedSampler>();
  if (!copy->values_.assign(values_)) {
    message = copy->values_.errorText();
    return nullptr;
  }
  copy->Sampler::operator=(*this);
  return copy;
}

void FixedSampler::clearRows() {
  values_.clear();
  numSamples = 0;
  // Without factors the table has no width, and takes no rows.
  if (numFactors > 0 && !values_.allocate(numFactors)) errorText = values_.errorText();
}

bool FixedSampler::addRow(const std::vector<double>& row) {
  if (std::ssize(row) != values_.columns() || row.empty())
    return refuse("A fixed sample of " + std::to_string(values_.columns()) + " factors can't take a run of " +
                  std::to_string(row.size()) + " values.");
  if (!checkStore(values_.addRow(row.data()) > 0, values_)) return false;
  numSamples = values_.rows();
  return true;
}

std::vector<double> FixedSampler::copyRow(std::int32_t i) const {
  std::vector<double> row(static_cast<std::size_t>(values_.columns()));
  if (!values_.getRow(i, row.data())) row.clear();
  return row;
}

void FixedSampler::setNumFactors(std::int32_t count) {
  Sampler::setNumFactors(count);
  if (values_.columns() != numFactors) clearRows();
}

// In one step, whatever the target.
bool FixedSampler::fill(double /*target*/, sampValues& store, FactorList& factors) {
  if (progress >= kComplete) return true;
  numSamples = values_.rows();
  if (!requireSamples()) return false;
  if (values_.columns() != factors.factorCount())
    return refuse("The fixed samples have another number of factors than the list");
  if (!checkStore(store.assign(values_, within()), store)) return false;
  setRunProgress(numSamples);
  return true;
}

void FixedSampler::writeSection(TextWriter& out) const {
  out << values_.rows() << '\n' << numFactors << '\n';
  values_.write(out);
}

bool FixedSampler::readItems(TextReader& in) {
  if (!readRuns(in) || !readFactorCount(in) || !values_.read(in)) return false;
  const auto says = [](std::int32_t runs, std::int32_t factors) {
    return std::to_string(runs) + " runs of " + std::to_string(factors) + " factors";
  };
  // Without runs the table may have no width.
  const bool fits = values_.rows() == numSamples && (values_.columns() == numFactors || values_.columns() == 0);
  return fits || in.refuse("the fixed samples are announced as " + says(numSamples, numFactors) + ", but there are " +
                           says(values_.rows(), values_.columns()));
}

void FixedSampler::restoreDefaults() {
  *this = FixedSampler();
}

}  // namespace tarvex
