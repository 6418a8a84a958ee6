#include "model/CellsRun.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

#include "base/NumberText.h"
#include "base/Paths.h"
#include "model/ModelChoice.h"
#include "model/ModelResults.h"
#include "model/SpreadsheetApplication.h"
#include "model/WorkbookCopy.h"
#include "sampling/PrepConfiguration.h"

namespace tarvex {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kBlockTime{200};  // from one look at the user to the next
constexpr std::int32_t kMostRows = 1024;              // of a block

std::string listed(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "'" : ", '") + name + "'";
  return text;
}

}  // namespace

CellsRun::CellsRun(SpreadsheetApplication& application, Warn warn, std::function<void(std::int32_t done)> told)
    : application_(application), warn_(std::move(warn)), told_(std::move(told)) {}

bool CellsRun::fail(const std::string& problem) {
  errorText_ = problem;
  return false;
}

bool CellsRun::run(const ModelChoice& choice, const PrepConfiguration& prep, ModelResults& results) {
  errorText_.clear();
  problemRow_ = 0;
  results.clear();
  workbook_ = absolutePath(existingPath(choice.outputFile));
  application_.errorText.clear();
  if (!pairFactors(choice, prep)) return false;
  const bool done = open() && bind(choice) && drive(choice, prep, results) && application_.close();
  application_.quit();
  if (done) return true;
  results.clear();
  if (errorText_.empty() && !application_.errorText.empty()) warn_("Error", application_.errorText);
  return false;
}

bool CellsRun::pairFactors(const ModelChoice& choice, const PrepConfiguration& prep) {
  std::vector<std::string> factors;
  for (std::int32_t i = 0; i < prep.factors.factorCount(); ++i) factors.push_back(prep.factors.factor(i).name);
  std::vector<bool> isUsed(factors.size());
  columns_.clear();
  for (const NamedCell& cell : choice.cells.inputs) {
    const auto found = std::ranges::find(factors, cell.name);
    if (found == factors.end())
      return fail(workbook_ + ": " + cell.place() + ": '" + cell.name + "' is no factor of the sample");
    columns_.push_back(static_cast<std::int32_t>(found - factors.begin()));
    isUsed[static_cast<std::size_t>(columns_.back())] = true;
  }
  std::vector<std::string> rest;
  for (std::size_t i = 0; i < factors.size(); ++i)
    if (!isUsed[i] && !prep.factors.factor(static_cast<std::int32_t>(i)).isConstant()) rest.push_back(factors[i]);
  if (!rest.empty()) warn_("Warning", "The workbook has no cell for the factors " + listed(rest) + '.');
  return true;
}

bool CellsRun::open() {
  if (!application_.start(false)) {
    warn_("Error", "Excel not registered properly");
    if (!application_.errorText.empty()) warn_("Information", std::exchange(application_.errorText, {}));
    return false;
  }
  if (const std::string text = openElsewhere(workbook_); !text.empty()) warn_("Warning", text);
  return application_.openCopy(workbook_);
}

bool CellsRun::findSheets(const std::vector<NamedCell>& cells, std::vector<CellPlace>& places) {
  places.clear();
  for (const NamedCell& cell : cells) {
    const auto found = std::ranges::find(sheets_, cell.sheet);
    if (found == sheets_.end())
      return fail(workbook_ + ": there is no sheet '" + cell.sheet + "', but " + listed(sheets_));
    places.push_back({static_cast<std::int32_t>(found - sheets_.begin()), cell.row, cell.column});
  }
  return true;
}

bool CellsRun::bind(const ModelChoice& choice) {
  std::int32_t count = 0;
  if (!application_.countSheets(count)) return false;
  sheets_.assign(static_cast<std::size_t>(count), {});
  for (std::int32_t i = 0; i < count; ++i)
    if (!application_.getSheetName(i, sheets_[static_cast<std::size_t>(i)])) return false;
  std::vector<std::size_t> formulas;
  if (!findSheets(choice.cells.inputs, inputs_) || !findSheets(choice.cells.outputs, outputs_) ||
      !application_.bindCells(inputs_, outputs_, formulas))
    return false;
  std::string cells;
  for (const std::size_t input : formulas)
    cells +=
        (cells.empty() ? "" : ", ") + choice.cells.inputs[input].place() + " (" + choice.cells.inputs[input].name + ')';
  if (!cells.empty())
    warn_("Warning", "Input cells hold formulas, in whose place the values of factors are put: " + cells +
                         ". The file keeps them.");
  return application_.recalculate();
}

// In blocks that are as long as the user can wait for.
bool CellsRun::drive(const ModelChoice& choice, const PrepConfiguration& prep, ModelResults& results) {
  std::vector<std::string> names;
  for (const NamedCell& cell : choice.cells.outputs) names.push_back(cell.name);
  results.reset(std::move(names));
  std::int32_t rows = 1;
  for (std::int32_t first = 0; first < prep.samples.rows();) {
    const std::int32_t count = std::min(rows, prep.samples.rows() - first);
    const auto start = Clock::now();
    if (!readBlock(prep, first, count) || !application_.driveRows(values_, block_) ||
        !keepBlock(choice, first, count, results))
      return false;
    first += count;
    rows = Clock::now() - start < kBlockTime ? std::min(rows * 2, kMostRows) : std::max(rows / 2, 1);
    if (told_) told_(first);
  }
  return true;
}

bool CellsRun::readBlock(const PrepConfiguration& prep, std::int32_t first, std::int32_t rows) {
  row_.resize(static_cast<std::size_t>(prep.samples.columns()));
  values_.clear();
  for (std::int32_t i = first; i < first + rows; ++i) {
    if (!prep.samples.getRow(i, row_.data())) return fail("The sample cannot be read: " + prep.samples.errorText());
    for (const std::int32_t column : columns_) {
      const double value = row_[static_cast<std::size_t>(column)];
      if (!std::isfinite(value)) {
        problemRow_ = i + 1;
        return fail("No cell can hold " + numberText(value) + ", the value of " + prep.factors.factor(column).name);
      }
      values_.push_back(value);
    }
  }
  return true;
}

bool CellsRun::keepBlock(const ModelChoice& choice, std::int32_t first, std::int32_t rows, ModelResults& results) {
  const std::size_t width = outputs_.size();
  std::vector<double> run(width);
  for (std::int32_t i = 0; i < block_.rows; ++i) {
    for (std::size_t k = 0; k < width; ++k) {
      const double* const value = std::get_if<double>(&block_.cells[static_cast<std::size_t>(i) * width + k]);
      if (value != nullptr) {
        run[k] = *value;
        continue;
      }
      std::string found;
      problemRow_ = first + i + 1;
      if (!application_.getCellText(outputs_[k], found)) return false;
      return fail(workbook_ + ": " + choice.cells.outputs[k].place() + ": expected a number, found " +
                  (found.empty() ? "nothing" : "'" + found + "'"));
    }
    if (!results.appendRun(ModelResults::singleTime(), run)) return fail(notStored(results));
  }
  return block_.rows == rows || fail("LibreOffice gives too few rows.");
}

}  // namespace tarvex
