#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/TextRules.h"
#include "base/sampValues.h"
#include "factors/FactorList.h"
#include "sampling/SampleStatistics.h"
#include "sampling/Sampler.h"
#include "sampling/SamplerFactory.h"

namespace tarvex {

class Relation;

// The pre-processor's part of a project: the factors, the sampling method with its settings, the generated sample and
// its statistics. A copy of one whose generation is under way has no sample.
class PrepConfiguration {
 public:
  PrepConfiguration() = default;
  PrepConfiguration(const PrepConfiguration&) = delete;  // a copy may find no room on the disk: copyFrom()
  PrepConfiguration& operator=(const PrepConfiguration&) = delete;
  PrepConfiguration(PrepConfiguration&&) = default;
  PrepConfiguration& operator=(PrepConfiguration&&) = default;

  // Makes this a copy of `other`. On false, as when the disk is full, this is as it was and the message is the store's.
  [[nodiscard]] bool copyFrom(const PrepConfiguration& other, std::string& message);

  // What the record takes.
  static constexpr LineRule kSampleFileRule{"the path of the sample file", 1023};

  FactorList factors;
  std::unique_ptr<Sampler> sampler;  // may be null
  sampValues samples;
  std::string sampleFile;  // where the sample is saved
  std::optional<SampleStatistics> sampleStatistics;
  // The sampling method; where none is known each run stands for itself, as those of the Random method do.
  std::int32_t methodId() const { return sampler ? sampler->methodId : std::int32_t{kRandom}; }
  std::int32_t external = 0;  // 1: from an external file, neither edited nor generated

  // Whether a generation can start, and its start: empty store of the right width, sampler reset, cursor before the
  // first cell. False, with everything as it was and the reason in errorText(), without a sampler or factors and for a
  // factor whose parameters can't be used, or when the working directory has no room for the sample. True for an
  // external sample, of which nothing changes.
  [[nodiscard]] bool prepareGeneration();
  // What the user is to be told before the prepared sample is made; empty when there is nothing.
  const std::string& warnings() const { return warnings_; }
  // Goes on to `target` percent and returns the percent reached; 100 when the sample is complete, -1 on failure with
  // the text in errorText(), and after a stop. Percents to 50 are the sampler's, the others the value pass, column by
  // column. An external sample is complete: 100 at once. Requires, for any other: prepareGeneration.
  std::int32_t generate(std::int32_t target, const Progress& progress = {});
  // Drops the half-made sample; does nothing when there is none.
  void cancelGeneration();
  // Why prepareGeneration or generate failed last; the sampler has the same.
  const std::string& errorText() const { return errorText_; }

  // How many rows of which relation could not be evaluated in the last generation; empty when all could.
  std::string relationFailures() const;

  // The Prep record. read() works on this object: read into a temporary. It also remembers the record's directory.
  void write(TextWriter& out) const;
  [[nodiscard]] bool read(TextReader& in);

  std::vector<std::string> factorNames;  // filled by prepareGeneration

 private:
  enum class Stage { Idle, Design, Values, Done };
  static constexpr std::int32_t kDone = 100;         // percent
  static constexpr std::int32_t kSamplerShare = 50;  // percent that belong to the sampler

  bool isHalfMade() const { return stage_ == Stage::Design || stage_ == Stage::Values; }
  bool fail(const std::string& text);
  bool passDesign(std::int32_t& percent, std::int32_t target, const Progress& progress);
  bool passValues(std::int32_t& percent, std::int32_t target, const Progress& progress);
  static void releaseTable(Factor& factor);
  bool openColumn(const Factor& factor, const Progress& progress);
  std::int32_t passWidth();  // factors that are passed side by side from nextFactor_ on
  bool passCells(std::int32_t endRow);
  bool passRelations(std::int32_t endRow);
  bool passRelation(std::int32_t factorIndex, std::int32_t first, std::int32_t rows);
  bool finishGeneration(const Progress& progress);
  void dropHalfMade();

  bool readSample(TextReader& in);
  bool readSampler(TextReader& in);

  Stage stage_ = Stage::Idle;
  std::int32_t askedRuns_ = 0;   // of the sampler, before a generation that may change the number
  std::int32_t nextFactor_ = 0;  // cursor of the value pass: place in the factor order
  std::int32_t nextRow_ = 0;
  std::vector<std::int32_t> failedRows_;  // per factor, rows whose relation failed
  std::string warnings_;
  std::string errorText_ = "No errors";
};

}  // namespace tarvex
