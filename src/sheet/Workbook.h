#pragma once

#include <com/sun/star/sheet/XCellRangeData.hpp>
#include <com/sun/star/sheet/XSpreadsheet.hpp>
#include <com/sun/star/sheet/XSpreadsheetDocument.hpp>
#include <string>

#include "model/SheetLine.h"
#include "sheet/Office.h"

namespace tarvex::office {

// A document of LibreOffice Calc. Operations throw Failure, or what LibreOffice throws.
class Workbook {
 public:
  // To change the file, to read it, or to work on an unnamed copy of what it holds.
  enum class Use { Write, Read, Copy };

  // Macros of the document never run.
  void open(const Office& office, const std::string& path, Use use, bool visible);
  bool isOpen() const { return document_.is(); }
  void close();

  std::int32_t sheetCount() const;
  std::string sheetName(std::int32_t index) const;
  void addSheet(const std::string& name) const;  // behind the others
  void clearSheet(std::int32_t index) const;     // contents and formats
  void write(std::int32_t index, const CellBlock& block) const;
  void read(std::int32_t index, CellBlock& block) const;  // cells outside the sheet are empty
  com::sun::star::uno::Reference<com::sun::star::sheet::XCellRangeData> cells(const CellPlace& first, std::int32_t rows,
                                                                              std::int32_t columns) const;
  std::string cellText(const CellPlace& place) const;  // as it is shown
  bool holdsFormula(const CellPlace& place) const;
  void computeAtOnce() const;  // whatever depends on a cell that changes
  void recalculate() const;
  void setSaved() const;
  void save(const std::string& path) const;  // in the document's own format, under this name

 private:
  com::sun::star::uno::Reference<com::sun::star::sheet::XSpreadsheet> sheetAt(std::int32_t index) const;

  com::sun::star::uno::Reference<com::sun::star::sheet::XSpreadsheetDocument> document_;
  rtl::OUString filter_;
  std::int32_t maxRows_ = 0;  // that the file's format can hold
  std::int32_t maxColumns_ = 0;
};

// The value is a number, a text, the empty text of an empty cell, or nothing for an error.
SheetCell cellOf(const com::sun::star::uno::Any& value);

}  // namespace tarvex::office
