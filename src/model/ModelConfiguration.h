#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "model/InternalModel.h"
#include "model/OutputNames.h"
#include "model/ResultFile.h"
#include "model/RunTimes.h"

namespace tarvex {

class PrepConfiguration;
class SpreadsheetApplication;
class TextReader;
class TextWriter;
class sampValues;

enum ModelKind : std::int32_t { kInternalModel = 0, kExternalExecutable = 1, kNoModelToStart = 2 };
enum TimeMode : std::int32_t { kNoTimeAxis = 0, kReadingTimes = 1, kDifferentGrids = 2, kSharedGrid = 3 };

// What is run and what came out of it. The output values lie in a working file in the order run, time point, output;
// only the time points are in memory.
class ModelConfiguration {
 public:
  ModelConfiguration() = default;
  ModelConfiguration(const ModelConfiguration& other);
  ModelConfiguration& operator=(const ModelConfiguration& other);
  ModelConfiguration(ModelConfiguration&&) noexcept = default;
  ModelConfiguration& operator=(ModelConfiguration&&) noexcept = default;

  std::string executable;
  std::string outputFile;
  std::int32_t kind = kNoModelToStart;
  std::int32_t spreadsheet = 0;
  std::int32_t timeMode = kNoTimeAxis;

  void setExternal(const std::string& executablePath, const std::string& outputPath, std::int32_t isSpreadsheet);
  void setInternalModel(std::unique_ptr<InternalModel> model);  // kind becomes 0
  void clearInternalModel();                                    // kind becomes 1
  InternalModel* internalModel() { return internalModel_.get(); }
  const InternalModel* internalModel() const { return internalModel_.get(); }

  std::int32_t runCount() const { return runTimes_.runs(); }
  std::int32_t outputCount() const { return static_cast<std::int32_t>(outputNames_.size()); }
  const std::vector<std::string>& outputNames() const { return outputNames_; }
  std::int32_t timeCount(std::int32_t run) const;
  double time(std::int32_t run, std::int32_t index) const;
  bool hasTimeAxis() const { return timeMode != kNoTimeAxis; }
  // All values of one run, timeCount(run) x outputCount(), time after time. A run that was never computed, as after a
  // stop, is all nan. False on a failed read.
  bool readRun(std::int32_t run, std::vector<double>& values) const;

  void clearResults();  // names, times and values

  // An internal run. prepare: results for `rows` runs of the internal model's outputs, none computed; false without an
  // internal model. advance: computes runs until the percentage reaches `target`, appends them, and returns the
  // percentage as an integer; -1 when the results can't be stored.
  [[nodiscard]] bool prepareInternalRun(std::int32_t rows);
  std::int32_t advanceInternalRun(sampValues& samples, float target);
  std::int32_t failedRuns() const { return failedRuns_; }       // runs whose evaluation failed, stored as nan
  std::int32_t firstFailedRun() const { return firstFailed_; }  // -1: none

  // Reads the file named by outputFile; results and internal model go first, `kind` stays. On false the results are
  // only partly filled.
  using Warn = tarvex::Warn;
  [[nodiscard]] bool readModelOutput(const Warn& warn);

  // Runs the workbook named by outputFile: writes the sample into its sheet "Inputs", has it computed and reads its
  // sheet "Outputs"; of the kind kNoModelToStart it is only read. The user computes and saves it in the application and
  // closes that. With nobody there it is recalculated, and takes the place of the file once all has gone well. On false
  // there are no results and the file is as it was, or as the user left it.
  enum class Attendance { User, Nobody };
  [[nodiscard]] bool runSpreadsheet(const PrepConfiguration& prep, SpreadsheetApplication& application,
                                    Attendance attendance, const Warn& warn);

  // The Model record. read() works on this object: read into a temporary. It also sets the remembered directories of
  // the model.
  void write(TextWriter& out) const;
  [[nodiscard]] bool read(TextReader& in);

 private:
  bool readOutputHeader(TextReader& in, const Warn& warn, std::int32_t& runs);
  bool readOutputRun(TextReader& in, std::int32_t run, std::vector<double>& times, std::vector<double>& row);
  bool readOutputSheet(SpreadsheetApplication& application, const Warn& warn);
  bool readOutputCells(SpreadsheetApplication& application, std::int32_t sheet, const Warn& warn);
  void readNames(TextReader& in, std::int32_t count);
  void readRuns(TextReader& in, std::int32_t count);

  std::unique_ptr<InternalModel> internalModel_;
  std::vector<std::string> outputNames_;
  RunTimes runTimes_;
  ResultFile dataFile_;
  float progress_ = 0.0f;  // of the internal run, in percent
  std::int32_t nextRun_ = 0;
  std::int32_t failedRuns_ = 0;
  std::int32_t firstFailed_ = -1;
};

// About how many bytes the record of `model` takes in a file, for the progress of writing it.
std::uint64_t recordBytes(const ModelConfiguration& model);

}  // namespace tarvex
