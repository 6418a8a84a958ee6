#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tarvex {

// A cell of a workbook and what it stands for. Rows and columns count from 0.
struct NamedCell {
  std::string name;  // of a factor or an output
  std::string sheet = {};
  std::int32_t row = 0;
  std::int32_t column = 0;

  std::string place() const;  // "Model!B3", "'My sheet'!B3"
  bool operator==(const NamedCell&) const = default;
};

// The cells by which a workbook that computes one case at a time is a model: those that take the factors of a run, and
// those that then hold its outputs. Without any it isn't driven by cells.
struct WorkbookCells {
  std::vector<NamedCell> inputs = {};
  std::vector<NamedCell> outputs = {};

  bool empty() const { return inputs.empty() && outputs.empty(); }
  // Why no workbook can be run by them; empty when one can: inputs and outputs, each name and each cell once, names
  // that outputs may have.
  std::string problem() const;
  // "input x1=Model!B3" and "output y=Model!F9", parted by tabs.
  std::string text() const;
  bool operator==(const WorkbookCells&) const = default;
};

// Reads a place as people write it: sheet, '!' or '.', and the cell, "$" anywhere a spreadsheet puts one, quotes around
// a sheet with blanks. On false `message` says what was expected, and the cell is as it was.
[[nodiscard]] bool parsePlace(std::string_view text, NamedCell& cell, std::string& message);
// "x1=Model!B3".
[[nodiscard]] bool parseNamedCell(std::string_view text, NamedCell& cell, std::string& message);
// What WorkbookCells::text() gives.
[[nodiscard]] bool parseWorkbookCells(std::string_view text, WorkbookCells& cells, std::string& message);

}  // namespace tarvex
