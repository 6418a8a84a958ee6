#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "model/SheetLine.h"

namespace tarvex {

// What a model that is a workbook needs of a spreadsheet application. It works on one workbook at a time; sheets, rows
// and columns count from 0. An operation that fails gives false with the reason in errorText, which is empty when the
// user stopped it; afterwards only quit() and start() are of use.
class SpreadsheetApplication {
 public:
  virtual ~SpreadsheetApplication() = default;

  std::string errorText;

  // An instance of the application, with windows that a user can work in or without any.
  [[nodiscard]] virtual bool start(bool visible) = 0;
  // Ends the instance, saving nothing. Without one it does nothing.
  virtual void quit() = 0;

  [[nodiscard]] virtual bool open(const std::string& path, bool readOnly) = 0;
  // An unnamed copy of the workbook as the file has it, to be written and never saved; nobody is kept from the file.
  [[nodiscard]] virtual bool openCopy(const std::string& path) = 0;
  [[nodiscard]] virtual bool close() = 0;

  [[nodiscard]] virtual bool countSheets(std::int32_t& count) = 0;
  [[nodiscard]] virtual bool getSheetName(std::int32_t sheet, std::string& name) = 0;
  [[nodiscard]] virtual bool addSheet(const std::string& name) = 0;  // behind the others
  [[nodiscard]] virtual bool clearCells(std::int32_t sheet) = 0;     // all of the sheet

  [[nodiscard]] virtual bool writeCells(std::int32_t sheet, const CellBlock& block) = 0;
  // Fills the block's cells. Those outside the sheet are empty.
  [[nodiscard]] virtual bool readCells(std::int32_t sheet, CellBlock& block) = 0;

  // The cells that driveRows() uses from now on; `formulas` are the places in the list of those inputs that hold a
  // formula, which the first row overwrites. What else would be in the way of new values, as a manual computation, is
  // put right.
  [[nodiscard]] virtual bool bindCells(const std::vector<CellPlace>& inputs, const std::vector<CellPlace>& outputs,
                                       std::vector<std::size_t>& formulas) = 0;
  // Puts row after row of values into the inputs, and after each reads the outputs: `block` gets a row of cells for
  // each. The first row that isn't all numbers is the last one; its inputs then stay in the workbook.
  [[nodiscard]] virtual bool driveRows(const std::vector<double>& rows, CellBlock& block) = 0;
  // What the cell shows: "#DIV/0!".
  [[nodiscard]] virtual bool getCellText(const CellPlace& place, std::string& text) = 0;

  [[nodiscard]] virtual bool recalculate() = 0;
  // The workbook counts as saved: closing it asks nothing.
  [[nodiscard]] virtual bool setSaved() = 0;
  // Puts the workbook, in its own format, into another file.
  [[nodiscard]] virtual bool saveCopy(const std::string& path) = 0;

  // Lets the user work until the application is closed. False when that wasn't awaited.
  [[nodiscard]] virtual bool waitForUser() = 0;
};

}  // namespace tarvex
