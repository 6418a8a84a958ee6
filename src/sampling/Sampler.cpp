#include "sampling/Sampler.h"

#include "base/TextWriter.h"

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
