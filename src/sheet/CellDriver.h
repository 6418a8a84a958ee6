#pragma once

#include <com/sun/star/sheet/XCellRangeData.hpp>
#include <com/sun/star/uno/Sequence.hxx>
#include <string>
#include <vector>

#include "model/SheetLine.h"
#include "sheet/Workbook.h"

namespace tarvex::office {

// Drives rows of values through cells of a workbook. A call to LibreOffice costs as much as many cells: those that lie
// side by side go over together.
class CellDriver {
 public:
  void bind(const Workbook& workbook, const std::vector<CellPlace>& inputs, const std::vector<CellPlace>& outputs);
  // Fills `block`, whose columns are the outputs, with a row for each of `given`, up to the first that isn't all
  // numbers.
  void drive(const CellBlock& given, CellBlock& block);

 private:
  // Cells side by side in a column or in a row.
  struct Group {
    com::sun::star::uno::Reference<com::sun::star::sheet::XCellRangeData> range;
    com::sun::star::uno::Sequence<com::sun::star::uno::Sequence<com::sun::star::uno::Any>> data;
    std::vector<std::size_t> cells;  // their places among the inputs, or the outputs
    bool isRow = false;
    std::string name;  // for messages
  };

  static std::vector<Group> grouped(const Workbook& workbook, const std::vector<CellPlace>& places);

  std::vector<Group> inputs_;
  std::vector<Group> outputs_;
  std::size_t inputCount_ = 0;
};

}  // namespace tarvex::office
