#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/Progress.h"
#include "postproc/OutputExpression.h"
#include "postproc/OutputTable.h"

namespace tarvex {

class ModelConfiguration;

// The variables of an analysis: what the selected texts stand for, and their values run by run.
class OutputVariables {
 public:
  // Takes the texts for the outputs of a model, whose names are VelsConfiguration::outputNames(). False when one of
  // them can't be understood: errorText is then a sentence for the user, and the old variables stay.
  [[nodiscard]] bool set(const std::vector<std::string>& texts, const std::vector<std::string>& outputNames);
  const std::vector<std::string>& texts() const { return texts_; }

  // Fills `table` with a row per run and a column per variable. False, with errorText, when the results can't be read,
  // the table can't take them, or it was stopped; the table is then empty. Requires: the model whose outputs the texts
  // were taken for.
  [[nodiscard]] bool build(const ModelConfiguration& model, OutputTable& table, const Progress& progress = {});

  // In how many runs of the last build which expression could not be evaluated and is 0.0; empty when all could.
  std::string failures() const;
  const std::string& errorText() const { return errorText_; }

  // Whether one text would be taken: empty, or the sentence against it.
  static std::string check(const std::string& text, const std::vector<std::string>& outputNames);
  // Every output, at its maximum where the results have a time axis.
  static std::vector<std::string> defaultVariables(const std::vector<std::string>& outputNames, bool hasTimeAxis);
  // lower, lower + step, lower + 2 step, ... strictly below upper. Empty for a step that isn't above 0, bounds that
  // aren't finite, or more than kMaxTimes times.
  static std::vector<double> timeRange(double lower, double upper, double step);
  static constexpr std::size_t kMaxTimes = 100000;  // far beyond what can be looked at

 private:
  bool addRun(const ModelConfiguration& model, std::int32_t run, OutputTable& table);

  std::vector<std::string> texts_;
  std::vector<OutputExpression> expressions_;  // parallel to texts_
  std::vector<std::int32_t> failedRuns_;       // parallel to texts_
  std::int32_t runs_ = 0;                      // of the last build
  std::vector<double> values_;                 // scratch: one run
  std::vector<double> row_;
  std::string errorText_ = "No errors";
};

}  // namespace tarvex
