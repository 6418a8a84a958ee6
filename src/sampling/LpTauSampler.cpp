#include "sampling/LpTauSampler.h"

#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "base/sampValues.h"
#include "factors/FactorList.h"
#include "sampling/designRows.h"

namespace tarvex {

LpTauSampler::LpTauSampler() : Sampler(kLpTau, 0, 1) {}

std::unique_ptr<Sampler> LpTauSampler::clone() const {
  return std::make_unique<LpTauSampler>(*this);
}

double LpTauSampler::generate(double targetPercent, sampValues& store, FactorList& factors) {
  numFactors = factors.factorCount();
  if (!hasSamples()) return -1.0;
  numFactors = factors.correlatableCount();  // the dimension of the points
  std::vector<double> row = constantRow(factors);
  std::vector<double> point;
  while (progress < targetPercent) {
    // Point 0 is the zero point: the runs start with point 1.
    if (!sequence_.lpTauPoint(sampleIndex + 1, numFactors, point)) {
      errorText = pointFailure(sampleIndex);
      return -1.0;
    }
    auto coordinate = point.begin();
    for (std::int32_t position = 0; position < factors.factorCount(); ++position) {
      const std::int32_t f = factors.factorAt(position);
      if (factors.factor(f).isStochastic()) row[static_cast<std::size_t>(f)] = *coordinate++;
    }
    if (!addRun(store, row, errorText)) return -1.0;
    setRunProgress(++sampleIndex);
  }
  return progress;
}

void LpTauSampler::writeSection(TextWriter& out) const {
  out << numSamples << '\n' << numFactors << '\n';
}

void LpTauSampler::readSection(TextReader& in) {
  if (!readItems(in)) {
    in.setFail();
    *this = LpTauSampler();
  }
}

bool LpTauSampler::readItems(TextReader& in) {
  in >> numSamples >> numFactors;
  if (in.fail() || !noneNegative({numSamples, numFactors})) return false;
  in.skipLine();
  return true;
}

}  // namespace tarvex
