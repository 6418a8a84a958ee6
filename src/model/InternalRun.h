#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/Progress.h"
#include "model/InternalModel.h"

namespace tarvex {

class ModelResults;
class sampValues;

// The internal model over a sample, in slices, so that the caller can serve the user between them. Model, sample and
// results must outlive the run.
class InternalRun {
 public:
  InternalRun(InternalModel& model, const sampValues& samples, ModelResults& results)
      : model_(model), samples_(samples), results_(results) {}

  // Empties the results and takes the names of the model's outputs. False, with errorText, for a sample that doesn't
  // fit the model.
  [[nodiscard]] bool prepare();
  // Appends runs until the percentage done reaches `target`; gives it as an integer, -1 with errorText on failure,
  // and after a stop.
  // Requires: prepare() gave true.
  std::int32_t advance(float target, const Progress& progress = {});

  // A run whose equations can't be evaluated is stored as nan in all outputs.
  std::int32_t failedRuns() const { return failedRuns_; }
  // The same for the user, to be told once after the run; empty when all went well.
  std::string failures() const;

  const std::string& errorText() const { return errorText_; }

 private:
  bool fail(const std::string& text);
  float percentOf(std::int32_t runs) const;
  std::int32_t runsUpTo(float target) const;
  [[nodiscard]] bool addRuns(std::int32_t last);
  [[nodiscard]] bool evaluateFrom(std::int32_t run);
  std::size_t blocksAtOnce() const;

  InternalModel& model_;
  std::vector<InternalModel> copies_;  // of the model, one for each core beyond the first
  const sampValues& samples_;
  ModelResults& results_;
  // The runs from firstEvaluated_ on whose outputs are known, some blocks: inputs, outputs, nan where it failed, and
  // failures.
  std::int32_t firstEvaluated_ = 0;
  std::int32_t evaluated_ = 0;
  std::vector<double> rows_;
  std::vector<double> rowOutputs_;
  std::vector<double> failed_;
  std::size_t outputs_ = 0;  // of a run
  float progress_ = 0.0f;    // in percent
  std::int32_t failedRuns_ = 0;
  std::int32_t firstFailed_ = -1;
  std::string errorText_ = "No errors";
};

}  // namespace tarvex
