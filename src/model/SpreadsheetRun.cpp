#include "model/SpreadsheetRun.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <utility>

#include "base/Paths.h"
#include "model/CellReader.h"
#include "model/ModelChoice.h"
#include "model/ModelResults.h"
#include "model/OutputSheet.h"
#include "model/SpreadsheetApplication.h"
#include "model/WorkbookCopy.h"
#include "sampling/PrepConfiguration.h"

namespace tarvex {

namespace {

constexpr const char* kInputs = "Inputs";
constexpr const char* kOutputs = "Outputs";

// The emptied sheet "Inputs"; without one it is made.
bool prepareInputs(SpreadsheetApplication& application, std::int32_t& sheet) {
  if (!findSheet(application, kInputs, sheet)) return false;
  if (sheet >= 0) return application.clearCells(sheet);
  return application.addSheet(kInputs) && findSheet(application, kInputs, sheet) && sheet >= 0;
}

bool writeSample(SpreadsheetApplication& application, const PrepConfiguration& prep) {
  std::int32_t sheet = -1;
  if (!prepareInputs(application, sheet)) return false;
  const std::int32_t columns = prep.samples.columns();
  CellBlock block{0, 0, OutputSheet::kHeaderRows, columns};
  for (std::int32_t i = 0; i < columns; ++i) block.cells.emplace_back(prep.factors.factor(i).name);
  if (!application.writeCells(sheet, block)) return false;
  std::vector<double> row(static_cast<std::size_t>(columns));
  for (std::int32_t first = 0; first < prep.samples.rows(); first += block.rows) {
    block = {first + OutputSheet::kHeaderRows, 0, std::min(rowsOfBlock(columns), prep.samples.rows() - first), columns};
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

// Links are followed: the file that they lead to is the one to replace.
std::string workbookPath(const std::string& name) {
  const std::string path = absolutePath(existingPath(name));
  std::error_code error;
  const std::filesystem::path target = std::filesystem::canonical(path, error);
  return error ? path : target.string();
}

}  // namespace

SpreadsheetRun::SpreadsheetRun(SpreadsheetApplication& application, Attendance attendance, Warn warn)
    : application_(application), attendance_(attendance), warn_(std::move(warn)) {}

bool SpreadsheetRun::run(const ModelChoice& choice, const PrepConfiguration& prep, ModelResults& results) {
  errorText_.clear();
  results.clear();
  workbook_ = workbookPath(choice.outputFile);
  WorkbookCopy copy;
  bool done = prepareWorkbook(choice, prep, copy) && readOutputs(results) && application_.close();
  application_.quit();
  if (done && !copy.path().empty() && !copy.replaceWorkbook()) done = cannotWrite(copy);
  if (done) return true;
  results.clear();
  if (!application_.errorText.empty()) warn_("Error", application_.errorText);
  return false;
}

bool SpreadsheetRun::prepareWorkbook(const ModelChoice& choice, const PrepConfiguration& prep, WorkbookCopy& copy) {
  if (choice.kind == kNoModelToStart) return openResults();
  if (attendance_ == Attendance::User) return letUserRun(prep) && openResults();
  return computeAlone(prep, copy);
}

bool SpreadsheetRun::start(bool visible) {
  application_.errorText.clear();
  if (application_.start(visible)) return true;
  warn_("Error", "Excel not registered properly");
  if (!application_.errorText.empty()) warn_("Information", application_.errorText);
  application_.errorText.clear();
  return false;
}

// The user computes the outputs and saves the workbook. It counts as saved before, so that closing it raises no
// question by itself.
bool SpreadsheetRun::letUserRun(const PrepConfiguration& prep) {
  return start(true) && application_.open(workbook_, false) && writeSample(application_, prep) &&
         application_.setSaved() && application_.waitForUser();
}

bool SpreadsheetRun::openResults() {
  return start(false) && application_.open(workbook_, true) && application_.setSaved();
}

bool SpreadsheetRun::computeAlone(const PrepConfiguration& prep, WorkbookCopy& copy) {
  if (attendance_ == Attendance::Unsaved)
    return start(false) && application_.openCopy(workbook_) && writeSample(application_, prep) &&
           application_.recalculate();
  if (!start(false) || !application_.open(workbook_, false)) return false;
  if (!copy.make(workbook_)) return cannotWrite(copy);
  return writeSample(application_, prep) && application_.recalculate() && application_.saveCopy(copy.path());
}

bool SpreadsheetRun::readOutputs(ModelResults& results) {
  std::int32_t sheet = -1;
  if (!findSheet(application_, kOutputs, sheet)) return false;
  if (sheet < 0) {
    warn_("Error", "Model Output variables not found");
    return false;
  }
  OutputSheet outputs(application_, sheet, warn_);
  if (outputs.read(results)) return true;
  if (!outputs.errorText().empty()) errorText_ = workbook_ + ": " + kOutputs + '.' + outputs.errorText();
  return false;
}

bool SpreadsheetRun::cannotWrite(const WorkbookCopy& copy) {
  application_.errorText =
      std::string("The workbook cannot be written: ") + std::strerror(copy.error()) + '\n' + workbook_;
  return false;
}

}  // namespace tarvex
