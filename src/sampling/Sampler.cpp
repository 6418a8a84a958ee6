#include "sampling/Sampler.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <stdexcept>

#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "base/sampValues.h"
#include "sampling/SamplerFactory.h"

namespace tarvex {

Sampler::Sampler(std::int32_t id, std::int32_t defaultSamples, std::int32_t defaultSeed)
    : methodId(id),
      methodName(methodNameOf(id)),
      numSamples(defaultSamples),
      seed(defaultSeed),
      randomState(-defaultSeed) {}

bool Sampler::setSamples(std::int32_t count) {
  if (count < 0) return refuse("Number of execution must be a positive value");
  numSamples = count;
  return true;
}

bool Sampler::setSeed(std::int32_t value) {
  if (value < 1) return refuse("Seed must be a value greater than 0 and less than 2,147,483,647");
  seed = value;
  randomState = -value;
  return true;
}

void Sampler::setNumFactors(std::int32_t count) {
  numFactors = std::max(count, 0);
}

std::int64_t Sampler::designRuns(const FactorList& /*factors*/) const {
  return numSamples;
}

std::string Sampler::warningBefore(const FactorList& /*factors*/) const {
  return {};
}

double Sampler::generate(double targetPercent, sampValues& store, FactorList& factors, const Progress& watched) {
  const auto tooLarge = [this] {
    return refuse("There is not enough memory for a sample of " + std::to_string(numSamples) + " runs of " +
                  std::to_string(numFactors) + " factors.");
  };
  bool done = false;
  watched_ = &watched;
  try {
    done = fill(std::min(targetPercent, kComplete), store, factors);
  } catch (const std::bad_alloc&) {
    done = tooLarge();
  } catch (const std::length_error&) {
    done = tooLarge();
  }
  watched_ = nullptr;
  return done ? progress : -1.0;
}

bool Sampler::report() {
  unreported_ = 0;
  return watched_->report(progress / kComplete);
}

void Sampler::reset() {
  progress = 0.0f;
  sampleIndex = 0;
  factorPosition = 0;
  randomState = -seed;
}

std::int64_t Sampler::recordedRuns() const {
  return -1;
}

void Sampler::readSection(TextReader& in) {
  reset();
  if (in.ok() && readItems(in)) return;
  in.refuse("the settings of the method can't be used");
  restoreDefaults();
}

void Sampler::write(TextWriter& out) const {
  out << methodId << '\n' << methodName << '\n';
  writeSection(out);
}

bool Sampler::refuse(const std::string& text) {
  errorText = text;
  return false;
}

bool Sampler::requireSamples() {
  if (numSamples > 0 && numFactors > 0) return true;
  return refuse("  No samples to generate");
}

bool Sampler::checkStore(bool done, const sampValues& store) {
  if (!done) errorText = store.errorText();
  return done;
}

bool Sampler::addRun(sampValues& store, const double* row) {
  return goesOn(store.columns()) && checkStore(store.addRow(row) > 0, store);
}

bool Sampler::addRuns(sampValues& store, const double* rows, std::int32_t count) {
  return goesOn(store.columns() * count) && checkStore(store.addRows(rows, count), store);
}

void Sampler::nextCell(std::int32_t cells) {
  if (++sampleIndex < cells) return;
  sampleIndex = 0;
  ++factorPosition;
}

float Sampler::progressOf(double percent, float phaseEnd, bool phaseDone) {
  return phaseDone ? phaseEnd : std::min(static_cast<float>(percent), std::nextafter(phaseEnd, 0.0f));
}

void Sampler::setProgress(double percent, float phaseEnd, bool phaseDone) {
  progress = progressOf(percent, phaseEnd, phaseDone);
}

float Sampler::runProgress(std::int64_t runs) const {
  return progressOf(static_cast<double>(runs) / numSamples * kComplete, static_cast<float>(kComplete),
                    runs >= numSamples);
}

void Sampler::setRunProgress(std::int64_t runs) {
  progress = runProgress(runs);
}

std::int32_t Sampler::runsUntil(double target) const {
  if (runProgress(0) >= target) return 0;
  return cellsUntil(target, numSamples, [this](std::int32_t runs) { return runProgress(runs); });
}

void Sampler::writeCounts(TextWriter& out) const {
  out << numSamples << '\n' << numFactors << '\n' << seed << '\n';
}

bool Sampler::readCounts(TextReader& in) {
  if (!readRuns(in) || !readFactorCount(in) || !readSeed(in)) return false;
  in.skipLine();
  return true;
}

bool Sampler::readRuns(TextReader& in) {
  return readAtLeast(in, "the number of runs", 0, numSamples);
}

bool Sampler::readFactorCount(TextReader& in, std::int32_t least) {
  return readAtLeast(in, "the number of factors", least, numFactors);
}

bool Sampler::readSeed(TextReader& in) {
  std::int32_t stored = 0;
  return readAtLeast(in, "the seed", 1, stored) && setSeed(stored);
}

bool readAtLeast(TextReader& in, const char* what, std::int32_t least, std::int32_t& value) {
  std::int32_t number = 0;
  in.expect(what) >> number;
  if (in.fail()) return false;
  if (number < least)
    return in.refuse(std::string(what) + " must be at least " + std::to_string(least) + ", not " +
                     std::to_string(number));
  value = number;
  return true;
}

}  // namespace tarvex
