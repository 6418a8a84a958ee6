#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "base/TextRules.h"
#include "model/InternalModel.h"
#include "model/WorkbookCells.h"

namespace tarvex {

// What stands in the executable's place when the model is a workbook.
inline constexpr const char* kSpreadsheetProgram = "Excel Application";

enum ModelKind : std::int32_t { kInternalModel = 0, kExternalExecutable = 1, kNoModelToStart = 2 };

// Which model is run, without anything that came out of it: a value that a panel edits and hands back.
class ModelChoice {
 public:
  ModelChoice() = default;
  ModelChoice(const ModelChoice& other);
  ModelChoice& operator=(const ModelChoice& other);
  ModelChoice(ModelChoice&&) noexcept = default;
  ModelChoice& operator=(ModelChoice&&) noexcept = default;

  // What the Model record takes.
  static constexpr LineRule kExecutableRule{"the path of the model", 254};
  static constexpr LineRule kOutputFileRule{"the path of the model's output file", 254};

  std::string executable;
  std::string outputFile;  // that the model writes; of a spreadsheet the workbook
  std::int32_t kind = kNoModelToStart;
  std::int32_t spreadsheet = 0;
  WorkbookCells cells;  // of a spreadsheet that computes one case at a time

  // The workbook is driven by its cells, and not by its sheets of inputs and outputs.
  bool drivesCells() const { return kind == kExternalExecutable && spreadsheet != 0 && !cells.empty(); }

  void setExternal(const std::string& executablePath, const std::string& outputPath, std::int32_t isSpreadsheet);
  // Why the paths can't be kept in a file; empty when they can.
  std::string problem() const;
  void setInternalModel(std::unique_ptr<InternalModel> model);           // kind becomes 0
  void clearInternalModel();                                             // kind becomes 1
  void dropInternalModel() { internalModel_.reset(); }                   // kind stays
  InternalModel* internalModel() const { return internalModel_.get(); }  // null: none

 private:
  std::unique_ptr<InternalModel> internalModel_;
};

}  // namespace tarvex
