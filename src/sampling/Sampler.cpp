#include "sampling/Sampler.h"

#include <algorithm>
#include <cmath>

#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "base/sampValues.h"

namespace tarvex {

Sampler::Sampler(std::int32_t id, std::int32_t defaultSamples, std::int32_t defaultSeed)
    : methodId(id),
      methodName(methodNameOf(id)),
      numSamples(defaultSamples),
      seed(defaultSeed),
      randomState(-defaultSeed) {}

void Sampler::reset() {
  progress = 0.0f;
  sampleIndex = 0;
  factorPosition = 0;
  randomState = -seed;
  warningText.clear();
}

void Sampler::write(TextWriter& out) const {
  out << methodId << '\n' << methodName << '\n';
  writeSection(out);
}

bool Sampler::hasSamples() {
  if (numSamples > 0 && numFactors > 0) return true;
  errorText = "  No samples to generate";
  return false;
}

bool Sampler::checkStore(bool done, const sampValues& store) {
  if (!done) errorText = store.errorText();
  return done;
}

void Sampler::nextCell(std::int64_t cells) {
  if (++sampleIndex < cells) return;
  sampleIndex = 0;
  ++factorPosition;
}

void Sampler::setProgress(double percent, float phaseEnd, bool phaseDone) {
  if (phaseDone)
    progress = phaseEnd;
  else
    progress = std::min(static_cast<float>(percent), std::nextafter(phaseEnd, 0.0f));
}

void Sampler::setRunProgress(std::int64_t runs) {
  constexpr float kComplete = 50.0f;
  setProgress(static_cast<double>(runs) / numSamples * kComplete, kComplete, runs >= numSamples);
}

void Sampler::writeCounts(TextWriter& out) const {
  out << numSamples << '\n' << numFactors << '\n' << seed << '\n';
}

bool Sampler::readCounts(TextReader& in) {
  in >> numSamples >> numFactors >> seed;
  if (numSamples < 0 || numFactors < 0 || seed < 1) in.setFail();
  in.skipLine();
  return in.ok();
}

bool Sampler::setSamples(std::int32_t count) {
  if (count < 0) {
    errorText = "Number of execution must be a positive value";
    return false;
  }
  numSamples = count;
  return true;
}

bool Sampler::setSeed(std::int32_t value) {
  if (value < 1) {
    errorText = "Seed must be a value greater than 0 and less than 2,147,483,647";
    return false;
  }
  seed = value;
  randomState = -value;
  return true;
}

}  // namespace tarvex
