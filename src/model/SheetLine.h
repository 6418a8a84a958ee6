#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace tarvex {

// What a cell of a sheet holds: a number, a text, or neither, as an empty cell, the empty text of a formula and a
// formula that fails do.
using SheetCell = std::variant<std::monostate, double, std::string>;

// Cells of a rectangle, row by row; rows and columns count from 0.
struct CellBlock {
  std::int32_t row = 0;
  std::int32_t column = 0;
  std::int32_t rows = 0;
  std::int32_t columns = 0;
  std::vector<SheetCell> cells = {};

  std::size_t size() const { return static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns); }
};

// A single cell. Sheets, rows and columns count from 0.
struct CellPlace {
  std::int32_t sheet = 0;
  std::int32_t row = 0;
  std::int32_t column = 0;
};

// "B5", as a spreadsheet calls the cell.
std::string cellName(std::int32_t row, std::int32_t column);

// A line of what tarvex and tarvex-sheet say to each other: fields between tabs, in which "\t", "\n", "\r" and "\\"
// stand for the characters that a line can't hold. A cell is '#' and its number, '"' and its text, or '-' for neither.

// Puts a field behind those that the line has.
void addField(std::string& line, std::string_view text);
void addField(std::string& line, std::int32_t number);
void addCell(std::string& line, const SheetCell& cell);
// The line of one row of the block, from its first cell.
std::string rowLine(const CellBlock& block, std::size_t firstCell);

std::vector<std::string> fieldsOf(std::string_view line);
// False for what is no such cell or number.
[[nodiscard]] bool parseField(std::string_view field, std::int32_t& number);
[[nodiscard]] bool parseCell(std::string_view field, SheetCell& cell);
// Puts a row's cells behind those that the block has. False for a line of another number of cells than its columns.
[[nodiscard]] bool parseRow(std::string_view line, CellBlock& block);

}  // namespace tarvex
