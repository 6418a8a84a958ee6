#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "model/TrialRow.h"

namespace tarvex {

class ModelChoice;
class ModelResults;
class PrepConfiguration;
class SpreadsheetApplication;

// What came of a model that was tried on one run.
struct TrialReport {
  static constexpr std::size_t kMostPrinted = std::size_t{64} << 10;  // bytes of what the model printed
  static constexpr std::size_t kMostLines = 400;                      // of its output file
  static constexpr std::size_t kMostOfLine = 500;                     // characters
  static constexpr std::size_t kMostRead = std::size_t{16} << 20;     // bytes, for all of them

  bool isGood = false;
  std::string problem = {};  // why it isn't: the text of a run, and what was found

  TrialRow row = {};           // that it was tried on
  std::string command = {};    // as it would be typed in a shell; empty: nothing was started
  std::string directory = {};  // in which it ran
  std::string printed = {};    // the beginning of what the model printed
  std::optional<int> exitCode = {};
  double seconds = 0.0;

  std::string outputFile = {};          // that was read; empty: none
  std::vector<std::string> lines = {};  // of it, those around the one that doesn't fit, else the first
  std::size_t firstLine = 1;            // the number of the first of these
  std::size_t badLine = 0;              // the number of the one that doesn't fit; 0: none

  // What was understood: a value for each output, time after time. `reasons`, where there are any, say of each output
  // why it has no value, or nothing.
  std::vector<std::string> names = {};
  std::vector<double> times = {};  // none without a time axis
  std::vector<double> values = {};
  std::vector<std::string> reasons = {};
  std::string warnings = {};  // names of outputs that were changed
};

// Tries models on single runs. Neither the project nor a file of the user's is other afterwards: an output file that is
// there is put aside before the model starts and put back at its end.
class ModelTrial {
 public:
  // What a run has to its disposal.
  struct Means {
    std::string directory = {};  // in which a program runs; empty: the current one
    // Called at least every 20 ms where the model allows it; false stops the trial.
    std::function<bool()> serve = {};
    std::function<std::unique_ptr<SpreadsheetApplication>(std::function<bool()> serve)> makeApplication = {};
  };

  ModelTrial(const ModelChoice& choice, const PrepConfiguration& prep, Means means)
      : choice_(choice), prep_(prep), means_(std::move(means)) {}

  // On row `row` of the sample, or TrialRow::kMeans.
  TrialReport run(std::int32_t row);

 private:
  [[nodiscard]] bool tryEquations();
  [[nodiscard]] bool tryProgram();
  [[nodiscard]] bool tryWorkbook();
  [[nodiscard]] bool tryCells();
  std::unique_ptr<SpreadsheetApplication> makeApplication();
  [[nodiscard]] bool startProgram(const std::string& sample, const std::string& directory);
  [[nodiscard]] bool understand(const std::string& path, bool oneRun);
  [[nodiscard]] bool takeRun(const ModelResults& results, bool oneRun);
  void readLines(const std::string& path);
  [[nodiscard]] bool makePrep(PrepConfiguration& single);
  [[nodiscard]] bool writeSample(const std::string& path);
  [[nodiscard]] bool serve();
  bool fail(const std::string& problem);

  const ModelChoice& choice_;
  const PrepConfiguration& prep_;
  Means means_;
  TrialReport report_;
  bool isStopped_ = false;
};

}  // namespace tarvex
