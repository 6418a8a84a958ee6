#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "model/OutputNames.h"
#include "model/SheetLine.h"

namespace tarvex {

class ModelChoice;
class ModelResults;
class PrepConfiguration;
class SpreadsheetApplication;
struct NamedCell;

// A model that is a workbook which computes one case at a time: the rows of a sample are driven through cells of it,
// one after the other. The workbook is used as its file has it and never written.
class CellsRun {
 public:
  // `told` is called now and then with the runs that are done.
  CellsRun(SpreadsheetApplication& application, Warn warn, std::function<void(std::int32_t done)> told = {});

  // Runs the chosen workbook by its cells and fills the results. Factors are found by their names; one without a cell
  // is told. On false there are no results, and errorText() says where and why, or is empty where messages have told it
  // or the user stopped the run.
  // Requires: the choice names cells.
  [[nodiscard]] bool run(const ModelChoice& choice, const PrepConfiguration& prep, ModelResults& results);
  const std::string& errorText() const { return errorText_; }
  // The row of the sample that it happened in, counted from 1; 0: in none.
  std::int32_t problemRow() const { return problemRow_; }

 private:
  [[nodiscard]] bool pairFactors(const ModelChoice& choice, const PrepConfiguration& prep);
  [[nodiscard]] bool open();
  [[nodiscard]] bool findSheets(const std::vector<NamedCell>& cells, std::vector<CellPlace>& places);
  [[nodiscard]] bool bind(const ModelChoice& choice);
  [[nodiscard]] bool drive(const ModelChoice& choice, const PrepConfiguration& prep, ModelResults& results);
  [[nodiscard]] bool readBlock(const PrepConfiguration& prep, std::int32_t first, std::int32_t rows);
  [[nodiscard]] bool keepBlock(const ModelChoice& choice, std::int32_t first, std::int32_t rows, ModelResults& results);
  bool fail(const std::string& problem);

  SpreadsheetApplication& application_;
  Warn warn_;
  std::function<void(std::int32_t done)> told_;
  std::string workbook_;
  std::string errorText_;
  std::int32_t problemRow_ = 0;
  std::vector<std::int32_t> columns_;  // of the sample, for each input cell
  std::vector<std::string> sheets_;
  std::vector<CellPlace> inputs_;
  std::vector<CellPlace> outputs_;
  std::vector<double> row_;     // scratch: of the sample
  std::vector<double> values_;  // of a block, for the input cells
  CellBlock block_;             // what came of it
};

}  // namespace tarvex
