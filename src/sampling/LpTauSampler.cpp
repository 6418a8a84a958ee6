#include "sampling/LpTauSampler.h"

#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "base/sampValues.h"
#include "factors/FactorList.h"
#include "sampling/designRows.h"

namespace tarvex {

bool LpTauSampler::fill(double target, sampValues& store, FactorList& factors) {
  numFactors = factors.factorCount();
  if (!requireSamples()) return false;
  numFactors = factors.correlatableCount();  // the dimension of the points
  std::vector<double> row = constantRow(factors);
  std::vector<double> point;
  while (progress < target) {
    // Point 0 is the zero point: the runs start with point 1.
    if (!sequence_.lpTauPoint(sampleIndex + 1, numFactors, point)) return refuse(pointFailure(sampleIndex));
    auto coordinate = point.begin();
    for (std::int32_t position = 0; position < factors.factorCount(); ++position) {
      const std::int32_t f = factors.factorAt(position);
      if (factors.factor(f).isStochastic()) row[static_cast<std::size_t>(f)] = *coordinate++;
    }
    if (!addRun(store, row)) return false;
    setRunProgress(++sampleIndex);
  }
  return true;
}

void LpTauSampler::writeSection(TextWriter& out) const {
  out << numSamples << '\n' << numFactors << '\n';
}

bool LpTauSampler::readItems(TextReader& in) {
  if (!readRuns(in) || !readFactorCount(in)) return false;
  in.skipLine();
  return true;
}

void LpTauSampler::restoreDefaults() {
  *this = LpTauSampler();
}

}  // namespace tarvex
