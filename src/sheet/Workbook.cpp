#include "sheet/Workbook.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <com/sun/star/beans/PropertyValue.hpp>
#include <com/sun/star/container/XNamed.hpp>
#include <com/sun/star/document/MacroExecMode.hpp>
#include <com/sun/star/frame/XComponentLoader.hpp>
#include <com/sun/star/frame/XModel.hpp>
#include <com/sun/star/frame/XStorable.hpp>
#include <com/sun/star/sheet/CellFlags.hpp>
#include <com/sun/star/sheet/XCalculatable.hpp>
#include <com/sun/star/sheet/XSheetOperation.hpp>
#include <com/sun/star/table/CellContentType.hpp>
#include <com/sun/star/text/XTextRange.hpp>
#include <com/sun/star/util/XCloseable.hpp>
#include <com/sun/star/util/XModifiable.hpp>
#include <cstring>
#include <filesystem>

namespace tarvex::office {

namespace {

using namespace com::sun::star;  // NOLINT(google-build-using-namespace): the interfaces live five levels deep
using uno::Reference;
using uno::UNO_QUERY;
using uno::UNO_QUERY_THROW;

// The formats that a workbook may have, and the size of a sheet in them.
struct Format {
  const char* filter;
  std::int32_t rows;
  std::int32_t columns;
};
constexpr Format kFormats[] = {
    {"calc8", 1048576, 1024},
    {"OpenDocument Spreadsheet Flat XML", 1048576, 1024},
    {"Calc MS Excel 2007 XML", 1048576, 16384},
    {"MS Excel 97", 65536, 256},
};

beans::PropertyValue property(const char* name, const uno::Any& value) {
  beans::PropertyValue result;
  result.Name = rtl::OUString::createFromAscii(name);
  result.Value = value;
  return result;
}

rtl::OUString filterOf(const Reference<frame::XModel>& model) {
  rtl::OUString filter;
  for (const beans::PropertyValue& argument : model->getArgs())
    if (argument.Name == "FilterName") argument.Value >>= filter;
  return filter;
}

uno::Any valueOf(const SheetCell& cell) {
  if (const double* number = std::get_if<double>(&cell)) return uno::Any(*number);
  const std::string* text = std::get_if<std::string>(&cell);
  return uno::Any(text != nullptr ? fromUtf8(*text) : rtl::OUString());
}

// By the file that spreadsheet applications lay beside a workbook that they have open.
bool isLocked(const std::filesystem::path& path) {
  std::error_code error;
  return std::filesystem::exists(path.parent_path() / (".~lock." + path.filename().string() + '#'), error);
}

}  // namespace

SheetCell cellOf(const uno::Any& value) {
  double number = 0.0;
  rtl::OUString text;
  if (value >>= number) return number;
  if ((value >>= text) && !text.isEmpty()) return utf8(text);
  return {};
}

void Workbook::open(const Office& office, const std::string& path, Use use, bool visible) {
  const std::string cannot = "The workbook cannot be opened: ";
  const std::string locked =
      "The workbook cannot be written: it is read-only, or open in another application.\n" + path;
  if (::access(path.c_str(), R_OK) != 0) throw Failure{cannot + std::strerror(errno) + "\n" + path};
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) throw Failure{cannot + "it is no plain file.\n" + path};
  const bool wasLocked = isLocked(path);
  uno::Sequence<beans::PropertyValue> arguments(4);
  arguments[0] = property("Hidden", uno::Any(!visible));
  arguments[1] = property("ReadOnly", uno::Any(use == Use::Read));
  arguments[2] = property("MacroExecutionMode", uno::Any(document::MacroExecMode::NEVER_EXECUTE));
  arguments[3] = property("AsTemplate", uno::Any(use == Use::Copy));
  const Reference<frame::XComponentLoader> loader(office.desktop(), UNO_QUERY_THROW);
  const Reference<lang::XComponent> loaded = loader->loadComponentFromURL(fileUrl(path), "_blank", 0, arguments);
  // Some formats are opened to be read then, and others not at all.
  if (!loaded.is() && use == Use::Write && wasLocked) throw Failure{locked};
  if (!loaded.is()) throw Failure{cannot + "it is damaged, or protected by a password.\n" + path};
  document_.set(loaded, UNO_QUERY);
  const Reference<frame::XModel> model(loaded, UNO_QUERY_THROW);
  filter_ = filterOf(model);
  const auto format = std::find_if(std::begin(kFormats), std::end(kFormats),
                                   [this](const Format& f) { return filter_.equalsAscii(f.filter); });
  if (!document_.is() || format == std::end(kFormats))
    throw Failure{cannot + "it is damaged, or no workbook in a format of .ods, .xlsx or .xls files.\n" + path};
  maxRows_ = format->rows;
  maxColumns_ = format->columns;
  const Reference<frame::XStorable> storable(document_, UNO_QUERY_THROW);
  if (use == Use::Write && storable->isReadonly()) throw Failure{locked};
}

void Workbook::close() {
  if (!document_.is()) return;
  setSaved();
  const Reference<util::XCloseable> closeable(document_, UNO_QUERY_THROW);
  document_.clear();
  closeable->close(true);
}

std::int32_t Workbook::sheetCount() const {
  const Reference<container::XIndexAccess> sheets(document_->getSheets(), UNO_QUERY_THROW);
  return sheets->getCount();
}

Reference<sheet::XSpreadsheet> Workbook::sheetAt(std::int32_t index) const {
  const Reference<container::XIndexAccess> sheets(document_->getSheets(), UNO_QUERY_THROW);
  return {sheets->getByIndex(index), UNO_QUERY_THROW};
}

std::string Workbook::sheetName(std::int32_t index) const {
  const Reference<container::XNamed> named(sheetAt(index), UNO_QUERY_THROW);
  return utf8(named->getName());
}

void Workbook::addSheet(const std::string& name) const {
  document_->getSheets()->insertNewByName(fromUtf8(name), static_cast<sal_Int16>(sheetCount()));
}

void Workbook::clearSheet(std::int32_t index) const {
  using namespace sheet::CellFlags;  // NOLINT(google-build-using-namespace): constants of the interface
  const Reference<sheet::XSheetOperation> operation(sheetAt(index), UNO_QUERY_THROW);
  operation->clearContents(VALUE | DATETIME | STRING | ANNOTATION | FORMULA | HARDATTR | STYLES);
}

void Workbook::write(std::int32_t index, const CellBlock& block) const {
  if (block.size() == 0) return;
  if (block.row + block.rows > maxRows_ || block.column + block.columns > maxColumns_)
    throw Failure{"The sample is too large for a sheet of the workbook: " + std::to_string(maxRows_) + " rows and " +
                  std::to_string(maxColumns_) + " columns."};
  uno::Sequence<uno::Sequence<uno::Any>> rows(block.rows);
  auto cell = block.cells.begin();
  for (uno::Sequence<uno::Any>& row : rows) {
    row.realloc(block.columns);
    for (uno::Any& value : row) value = valueOf(*cell++);
  }
  const Reference<sheet::XCellRangeData> range(
      sheetAt(index)->getCellRangeByPosition(block.column, block.row, block.column + block.columns - 1,
                                             block.row + block.rows - 1),
      UNO_QUERY_THROW);
  try {
    range->setDataArray(rows);
  } catch (const uno::RuntimeException&) {
    throw Failure{"Cells of the workbook cannot be written. Are they protected?"};
  }
}

void Workbook::read(std::int32_t index, CellBlock& block) const {
  block.cells.assign(block.size(), {});
  const std::int32_t rows = std::min(block.rows, maxRows_ - block.row);
  const std::int32_t columns = std::min(block.columns, maxColumns_ - block.column);
  if (rows <= 0 || columns <= 0) return;
  const Reference<sheet::XCellRangeData> range(
      sheetAt(index)->getCellRangeByPosition(block.column, block.row, block.column + columns - 1, block.row + rows - 1),
      UNO_QUERY_THROW);
  std::size_t first = 0;
  for (const uno::Sequence<uno::Any>& row : range->getDataArray()) {
    std::transform(row.begin(), row.end(), block.cells.begin() + static_cast<std::ptrdiff_t>(first), cellOf);
    first += static_cast<std::size_t>(block.columns);
  }
}

Reference<sheet::XCellRangeData> Workbook::cells(const CellPlace& first, std::int32_t rows,
                                                 std::int32_t columns) const {
  if (first.row + rows > maxRows_ || first.column + columns > maxColumns_)
    throw Failure{"The sheet " + sheetName(first.sheet) + " of the workbook has no cell " +
                  cellName(first.row + rows - 1, first.column + columns - 1) + '.'};
  return {sheetAt(first.sheet)
              ->getCellRangeByPosition(first.column, first.row, first.column + columns - 1, first.row + rows - 1),
          UNO_QUERY_THROW};
}

std::string Workbook::cellText(const CellPlace& place) const {
  const Reference<text::XTextRange> cell(sheetAt(place.sheet)->getCellByPosition(place.column, place.row),
                                         UNO_QUERY_THROW);
  return utf8(cell->getString());
}

bool Workbook::holdsFormula(const CellPlace& place) const {
  return sheetAt(place.sheet)->getCellByPosition(place.column, place.row)->getType() == table::CellContentType_FORMULA;
}

void Workbook::computeAtOnce() const {
  const Reference<sheet::XCalculatable> calculatable(document_, UNO_QUERY_THROW);
  calculatable->enableAutomaticCalculation(true);
}

void Workbook::recalculate() const {
  const Reference<sheet::XCalculatable> calculatable(document_, UNO_QUERY_THROW);
  calculatable->calculateAll();
}

void Workbook::setSaved() const {
  const Reference<util::XModifiable> modifiable(document_, UNO_QUERY_THROW);
  modifiable->setModified(false);
}

void Workbook::save(const std::string& path) const {
  uno::Sequence<beans::PropertyValue> arguments(2);
  arguments[0] = property("FilterName", uno::Any(filter_));
  arguments[1] = property("Overwrite", uno::Any(true));
  const Reference<frame::XStorable> storable(document_, UNO_QUERY_THROW);
  storable->storeToURL(fileUrl(path), arguments);
}

}  // namespace tarvex::office
