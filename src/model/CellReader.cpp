#include "model/CellReader.h"

#include <algorithm>
#include <variant>

#include "base/NumberText.h"
#include "model/SpreadsheetApplication.h"

namespace tarvex {

namespace {

constexpr std::int32_t kBlockCells = 8192;  // that go over at once

}  // namespace

std::int32_t rowsOfBlock(std::int32_t columns) {
  return std::max(1, kBlockCells / std::max(1, columns));
}

CellReader::CellReader(SpreadsheetApplication& application, std::int32_t sheet, std::int32_t columns)
    : CellReader(application, sheet, columns, rowsOfBlock(columns)) {}

CellReader::CellReader(SpreadsheetApplication& application, std::int32_t sheet, std::int32_t columns,
                       std::int32_t rowsOfBlock)
    : application_(application), sheet_(sheet), blockRows_(rowsOfBlock) {
  block_.columns = columns;
}

const SheetCell* CellReader::at(std::int32_t row, std::int32_t column) {
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

const double* CellReader::number(std::int32_t row, std::int32_t column) {
  return std::get_if<double>(at(row, column));
}

std::string CellReader::mismatch(std::int32_t row, std::int32_t column, const std::string& expected) {
  const SheetCell* const cell = at(row, column);
  std::string found = "nothing";
  if (const auto* text = std::get_if<std::string>(cell)) found = "'" + *text + "'";
  if (const auto* number = std::get_if<double>(cell)) found = numberText(*number, 6);
  return place(row, column) + "expected " + expected + ", found " + found;
}

std::string CellReader::place(std::int32_t row, std::int32_t column) {
  return cellName(row, column) + ": ";
}

}  // namespace tarvex
