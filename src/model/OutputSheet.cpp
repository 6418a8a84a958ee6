#include "model/OutputSheet.h"

#include <algorithm>
#include <utility>

#include "base/NumberText.h"
#include "model/CellReader.h"
#include "model/ModelResults.h"
#include "model/SpreadsheetApplication.h"

namespace tarvex {

namespace {

constexpr std::int32_t kNameColumns = 64;
constexpr std::int32_t kNotFound = -1;

// Kept: the walk moves down one row with each cell that it tests, and so goes through the table diagonally. A table
// with a text among its numbers may end there or not.
std::int32_t countRuns(CellReader& cells, std::int32_t columns) {
  std::int32_t run = 0;
  while (cells.number(run + OutputSheet::kHeaderRows, run % columns) != nullptr) ++run;
  return run;
}

}  // namespace

bool findSheet(SpreadsheetApplication& application, const std::string& name, std::int32_t& sheet) {
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

OutputSheet::OutputSheet(SpreadsheetApplication& application, std::int32_t sheet, Warn warn)
    : application_(application), sheet_(sheet), warn_(std::move(warn)) {}

bool OutputSheet::read(ModelResults& results) {
  results.clear();
  if (readNames(results) && readRuns(results)) return true;
  results.clear();
  return false;
}

bool OutputSheet::readNames(ModelResults& results) {
  CellReader cells(application_, sheet_, kNameColumns, OutputSheet::kHeaderRows);
  OutputNames names(warn_);
  const auto column = [&names] { return static_cast<std::int32_t>(names.size()); };
  while (const auto* text = std::get_if<std::string>(cells.at(0, column()))) {
    if (names.add(*text, *text, errorText_)) continue;
    errorText_ = CellReader::place(0, column()) + errorText_;
    return false;
  }
  if (cells.failed()) return false;
  if (column() == 0) errorText_ = cells.mismatch(0, 0, "the name of an output");
  std::vector<std::string> given = names.given();
  results.reset(names.release(), std::move(given));
  return errorText_.empty();
}

bool OutputSheet::readRuns(ModelResults& results) {
  const std::int32_t columns = results.outputCount();
  CellReader counted(application_, sheet_, columns);
  const std::int32_t runs = countRuns(counted, columns);
  if (counted.failed()) return false;
  if (runs == 0) {
    errorText_ = counted.mismatch(OutputSheet::kHeaderRows, 0, "a number");
    return false;
  }
  CellReader cells(application_, sheet_, columns);
  std::vector<double> row(static_cast<std::size_t>(columns));
  for (std::int32_t run = 0; run < runs; ++run) {
    for (std::int32_t column = 0; column < columns; ++column) {
      const double* value = cells.number(run + OutputSheet::kHeaderRows, column);
      if (value == nullptr) {
        if (!cells.failed()) errorText_ = cells.mismatch(run + OutputSheet::kHeaderRows, column, "a number");
        return false;
      }
      row[static_cast<std::size_t>(column)] = *value;
    }
    if (results.appendRun(ModelResults::singleTime(), row)) continue;
    errorText_ = notStored(results);
    return false;
  }
  return true;
}

}  // namespace tarvex
