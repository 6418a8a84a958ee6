#pragma once

#include <cstdint>
#include <string>

#include "model/OutputNames.h"

namespace tarvex {

class ModelResults;
class SpreadsheetApplication;

// Reads the cells in which a workbook left its results: a row of names, below it a row for each run.
class OutputSheet {
 public:
  static constexpr std::int32_t kHeaderRows = 1;  // above the runs, in the sheet of inputs too

  OutputSheet(SpreadsheetApplication& application, std::int32_t sheet, Warn warn);

  // Replaces the results. On false there are none; errorText() then names the cell, or is empty where the application
  // failed.
  [[nodiscard]] bool read(ModelResults& results);
  const std::string& errorText() const { return errorText_; }

 private:
  [[nodiscard]] bool readNames(ModelResults& results);
  [[nodiscard]] bool readRuns(ModelResults& results);

  SpreadsheetApplication& application_;
  std::int32_t sheet_;
  Warn warn_;
  std::string errorText_;
};

// The sheet of this name, or -1. False on a failed call.
[[nodiscard]] bool findSheet(SpreadsheetApplication& application, const std::string& name, std::int32_t& sheet);

}  // namespace tarvex
