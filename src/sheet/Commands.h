#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "sheet/CellDriver.h"
#include "sheet/Office.h"
#include "sheet/Workbook.h"

namespace tarvex::office {

// Carries out what the lines of the input ask for, one after the other, and writes the answers.
class Commands {
 public:
  Commands(Office& office, std::istream& in, std::ostream& out) : office_(office), in_(in), out_(out) {}

  // Until the request to quit, or the end of the input: false for that. Then no workbook is open.
  bool serve();

 private:
  using Words = std::vector<std::string>;

  std::string answer(const Words& words);
  std::string carryOut(const Words& words);
  std::string useWorkbook(const Words& words);
  CellBlock readRows(const Words& words, CellBlock block);
  std::string bind(const Words& words);
  std::string drive(const CellBlock& given);

  Office& office_;
  Workbook workbook_;
  CellDriver driver_;
  std::int32_t outputs_ = 0;  // of a row that is driven
  bool visible_ = false;
  std::istream& in_;
  std::ostream& out_;
};

}  // namespace tarvex::office
