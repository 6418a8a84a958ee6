#include <algorithm>
#include <cstring>
#include <filesystem>

#include "base/Paths.h"
#include "model/ModelConfiguration.h"
#include "model/SpreadsheetApplication.h"
#include "model/WorkbookCopy.h"
#include "sampling/PrepConfiguration.h"

namespace tarvex {

namespace {

constexpr const char* kInputs = "Inputs";
constexpr const char* kOutputs = "Outputs";
constexpr std::int32_t kHeader = 1;         // rows above the runs
constexpr std::int32_t kBlockCells = 8192;  // that go over at once
constexpr std::int32_t kNameColumns = 64;
constexpr std::int32_t kNotFound = -1;
const std::vector<double> kSingleTime = {0.0};

std::int32_t rowsOfBlock(std::int32_t columns) {
  return std::max(1, kBlockCells / std::max(1, columns));
}

// The sheet of this name, or kNotFound. False on a failed call.
bool findSheet(SpreadsheetApplication& application, const char* name, std::int32_t& sheet) {
  std::int32_t count = 0;
  if (!application.countSheets(count)) return false;
  std::string found;
  for (sheet = 0; sheet < count; ++sheet) {
    if (!application.getSheetName(sheet, found)) return false;
    if (found == name) return true;
  }
  sheet = kNotFound;
  return true;
}

// The emptied sheet "Inputs"; without one it is made.
bool prepareInputs(SpreadsheetApplication& application, std::int32_t& sheet) {
  if (!findSheet(application, kInputs, sheet)) return false;
  if (sheet != kNotFound) return application.clearCells(sheet);
  return application.addSheet(kInputs) && findSheet(application, kInputs, sheet) && sheet != kNotFound;
}

bool writeSample(SpreadsheetApplication& application, const PrepConfiguration& prep) {
  std::int32_t sheet = kNotFound;
  if (!prepareInputs(application, sheet)) return false;
  const std::int32_t columns = prep.samples.columns();
  CellBlock block{0, 0, kHeader, columns};
  for (std::int32_t i = 0; i < columns; ++i) block.cells.emplace_back(prep.factors.factor(i).name);
  if (!application.writeCells(sheet, block)) return false;
  std::vector<double> row(static_cast<std::size_t>(columns));
  for (std::int32_t first = 0; first < prep.samples.rows(); first += block.rows) {
    block = {first + kHeader, 0, std::min(rowsOfBlock(columns), prep.samples.rows() - first), columns};
    block.cells.reserve(block.size());
    for (std::int32_t i = 0; i < block.rows; ++i) {
      if (!prep.samples.getRow(first + i, row.data())) {
        application.errorText = prep.samples.errorText();
        return false;
      }
      block.cells.insert(block.cells.end(), row.begin(), row.end());
    }
    if (!application.writeCells(sheet, block)) return false;
  }
  return true;
}

// The cells of a sheet one by one, got from the application in blocks of whole rows.
class CellReader {
 public:
  CellReader(SpreadsheetApplication& application, std::int32_t sheet, std::int32_t columns, std::int32_t rows)
      : application_(application), sheet_(sheet), blockRows_(rows) {
    block_.columns = columns;
  }

  // Null on a failed call, for good.
  const SheetCell* at(std::int32_t row, std::int32_t column) {
    if (failed_) return nullptr;
    const std::int32_t firstColumn = column / block_.columns * block_.columns;
    if (row < block_.row || row >= block_.row + block_.rows || firstColumn != block_.column) {
      block_.row = row;
      block_.column = firstColumn;
      block_.rows = blockRows_;
      failed_ = !application_.readCells(sheet_, block_) || block_.cells.size() != block_.size();
      if (failed_) return nullptr;
    }
    return &block_.cells[static_cast<std::size_t>(row - block_.row) * static_cast<std::size_t>(block_.columns) +
                         static_cast<std::size_t>(column - firstColumn)];
  }
  const double* number(std::int32_t row, std::int32_t column) { return std::get_if<double>(at(row, column)); }
  bool failed() const { return failed_; }

 private:
  SpreadsheetApplication& application_;
  std::int32_t sheet_;
  std::int32_t blockRows_;
  CellBlock block_;
  bool failed_ = false;
};

// Kept: the walk moves down one row with each cell that it tests, and so goes through the table diagonally. A table
// with a text among its numbers may end there or not.
std::int32_t countRuns(CellReader& cells, std::int32_t columns) {
  std::int32_t run = 0;
  while (cells.number(run + kHeader, run % columns) != nullptr) ++run;
  return run;
}

bool cannotWrite(SpreadsheetApplication& application, const WorkbookCopy& copy, const std::string& workbook) {
  application.errorText =
      std::string("The workbook cannot be written: ") + std::strerror(copy.error()) + '\n' + workbook;
  return false;
}

bool startApplication(SpreadsheetApplication& application, bool visible, const Warn& warn) {
  application.errorText.clear();
  if (application.start(visible)) return true;
  warn("Error", "Excel not registered properly");
  if (!application.errorText.empty()) warn("Information", application.errorText);
  application.errorText.clear();
  return false;
}

// The user computes the outputs and saves the workbook. It counts as saved before, so that closing it raises no
// question by itself.
bool letUserRun(SpreadsheetApplication& application, const PrepConfiguration& prep, const std::string& workbook,
                const Warn& warn) {
  return startApplication(application, true, warn) && application.open(workbook, false) &&
         writeSample(application, prep) && application.setSaved() && application.waitForUser();
}

bool openResults(SpreadsheetApplication& application, const std::string& workbook, const Warn& warn) {
  return startApplication(application, false, warn) && application.open(workbook, true) && application.setSaved();
}

bool computeAlone(SpreadsheetApplication& application, const PrepConfiguration& prep, const std::string& workbook,
                  WorkbookCopy& copy, const Warn& warn) {
  if (!startApplication(application, false, warn) || !application.open(workbook, false)) return false;
  if (!copy.make(workbook)) return cannotWrite(application, copy, workbook);
  return writeSample(application, prep) && application.recalculate() && application.saveCopy(copy.path());
}

// Links are followed: the file that they lead to is the one to replace.
std::string workbookPath(const std::string& name) {
  const std::string path = absolutePath(existingPath(name));
  std::error_code error;
  const std::filesystem::path target = std::filesystem::canonical(path, error);
  return error ? path : target.string();
}

}  // namespace

bool ModelConfiguration::readOutputCells(SpreadsheetApplication& application, std::int32_t sheet, const Warn& warn) {
  CellReader names(application, sheet, kNameColumns, kHeader);
  const auto nameAt = [&names](std::size_t i) {
    return std::get_if<std::string>(names.at(0, static_cast<std::int32_t>(i)));
  };
  while (const std::string* text = nameAt(outputNames_.size())) {
    std::string name = *text;
    if (!fitOutputName(name, warn)) return false;
    outputNames_.push_back(name);
  }
  if (names.failed() || outputNames_.empty()) return false;

  const std::int32_t columns = outputCount();
  CellReader counted(application, sheet, columns, rowsOfBlock(columns));
  const std::int32_t runs = countRuns(counted, columns);
  if (counted.failed() || runs == 0) return false;
  CellReader cells(application, sheet, columns, rowsOfBlock(columns));
  for (std::int32_t run = 0; run < runs; ++run) {
    for (std::int32_t column = 0; column < columns; ++column) {
      const double* value = cells.number(run + kHeader, column);
      if (value == nullptr) return false;
      if (!dataFile_.append(value, 1)) {
        application.errorText = "The results of the model cannot be stored: the working file cannot be written.";
        return false;
      }
    }
  }
  runTimes_.addRuns(runs, kSingleTime);
  return true;
}

bool ModelConfiguration::readOutputSheet(SpreadsheetApplication& application, const Warn& warn) {
  std::int32_t sheet = kNotFound;
  if (!findSheet(application, kOutputs, sheet)) return false;
  if (sheet == kNotFound) {
    warn("Error", "Model Output variables not found");
    return false;
  }
  clearResults();
  const bool read = readOutputCells(application, sheet, warn);
  if (!read) clearResults();
  return read;
}

bool ModelConfiguration::runSpreadsheet(const PrepConfiguration& prep, SpreadsheetApplication& application,
                                        Attendance attendance, const Warn& warn) {
  const std::string workbook = workbookPath(outputFile);
  WorkbookCopy copy;
  bool ready = false;
  if (kind == kNoModelToStart)
    ready = openResults(application, workbook, warn);
  else if (attendance == Attendance::User)
    ready = letUserRun(application, prep, workbook, warn) && openResults(application, workbook, warn);
  else
    ready = computeAlone(application, prep, workbook, copy, warn);

  bool done = ready && readOutputSheet(application, warn) && application.close();
  application.quit();
  if (done && !copy.path().empty() && !copy.replaceWorkbook()) {
    clearResults();
    done = cannotWrite(application, copy, workbook);
  }
  if (!done && !application.errorText.empty()) warn("Error", application.errorText);
  return done;
}

}  // namespace tarvex
