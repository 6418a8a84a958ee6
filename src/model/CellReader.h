#pragma once

#include <cstdint>
#include <string>

#include "model/SheetLine.h"

namespace tarvex {

class SpreadsheetApplication;

// The cells of a sheet one by one, got from the application in blocks of whole rows.
class CellReader {
 public:
  CellReader(SpreadsheetApplication& application, std::int32_t sheet, std::int32_t columns);
  CellReader(SpreadsheetApplication& application, std::int32_t sheet, std::int32_t columns, std::int32_t rowsOfBlock);

  // Null on a failed call, for good. Valid until the next call.
  const SheetCell* at(std::int32_t row, std::int32_t column);
  const double* number(std::int32_t row, std::int32_t column);  // null, too, where there is none
  bool failed() const { return failed_; }

  // "B5: expected a number, found 'x'".
  std::string mismatch(std::int32_t row, std::int32_t column, const std::string& expected);
  static std::string place(std::int32_t row, std::int32_t column);  // "B5: "

 private:
  SpreadsheetApplication& application_;
  std::int32_t sheet_;
  std::int32_t blockRows_;
  CellBlock block_;
  bool failed_ = false;
};

// As many rows of so many cells as go over to the application at once.
std::int32_t rowsOfBlock(std::int32_t columns);

}  // namespace tarvex
