#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/sampValues.h"
#include "factors/FactorList.h"
#include "sampling/SampleStatistics.h"
#include "sampling/Sampler.h"

namespace tarvex {

// The pre-processor's part of a project: the factors, the sampling method with its settings, the generated sample and
// its statistics.
class PrepConfiguration {
 public:
  PrepConfiguration() = default;
  PrepConfiguration(const PrepConfiguration& other);
  PrepConfiguration& operator=(const PrepConfiguration& other);
  PrepConfiguration(PrepConfiguration&&) = default;
  PrepConfiguration& operator=(PrepConfiguration&&) = default;

  FactorList factors;
  std::unique_ptr<Sampler> sampler;  // may be null
  sampValues samples;
  std::string sampleFile;  // where the sample is saved
  std::optional<SampleStatistics> sampleStatistics;
  std::int32_t external = 0;  // 1: from an external file, neither edited nor generated

  // Ready for generate(): empty store of the right width, sampler reset, cursor before the first cell. False when the
  // store refuses; its text is then the sampler's errorText. Requires: a sampler.
  [[nodiscard]] bool prepareGeneration();
  // Goes on to `target` percent and returns the percent reached; 100 when the sample is complete, -1 on failure with
  // the text in the sampler. Percents to 50 are the sampler's, the others the value pass, column by column.
  std::int32_t generate(std::int32_t target);
  // Drops the half-made sample.
  void cancelGeneration();

  // How many rows of which relation could not be evaluated in the last generation; empty when all could.
  std::string relationFailures() const;

  // The Prep record. read() works on this object: read into a temporary. It also remembers the record's directory.
  void write(TextWriter& out) const;
  [[nodiscard]] bool read(TextReader& in);

  std::vector<std::string> factorNames;  // filled by prepareGeneration

 private:
  bool passCell(std::int32_t factorIndex);

  std::int32_t nextFactor_ = -1;  // cursor of the value pass: place in the factor order
  std::int32_t nextRow_ = 0;
  std::vector<std::int32_t> failedRows_;  // per factor, rows whose relation failed
};

}  // namespace tarvex
