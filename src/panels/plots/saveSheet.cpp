#include "panels/plots/saveSheet.h"

#include <string>

#include "app/RunController.h"
#include "base/TextWriter.h"
#include "panels/prep/choosePrepFile.h"
#include "postproc/CellFormat.h"
#include "postproc/ResultExport.h"
#include "toolkit/Panel.h"
#include "toolkit/TableModel.h"

namespace tarvex {
namespace {

constexpr std::uint64_t kCell = 21;  // bytes, with the tab

void writeSheet(TextWriter& out, const TableModel& table) {
  const auto cell = [&out](const QVariant& content) {
    out << savedCell(content.toString().trimmed().toStdString()) << '\t';
  };
  const int columns = table.columnCount();
  cell({});
  for (int column = 0; column < columns; ++column) cell(table.headerData(column, Qt::Horizontal, Qt::DisplayRole));
  out << '\n';
  for (int row = 0; row < table.rowCount() && out.ok(); ++row) {
    cell(table.headerData(row, Qt::Vertical, Qt::DisplayRole));
    for (int column = 0; column < columns; ++column) cell(table.data(table.index(row, column), Qt::DisplayRole));
    out << '\n';
  }
}

}  // namespace

void saveSheet(TableModel& table, RunController& controller, Panel& panel) {
  const auto chosen = choosePrepFile("Save table", FileChoice::Purpose::Save, {}, "", panel.window());
  if (!chosen) return;
  const auto work = [&](const Progress& progress, std::string& message) {
    TextWriter out(chosen->path.toStdString());
    out.watch(progress, kCell * static_cast<std::uint64_t>(table.rowCount() + 1) *
                            static_cast<std::uint64_t>(table.columnCount() + 1));
    writeSheet(out, table);
    if (out.commit()) return true;
    message = withProblem(kCannotSave, out);
    return false;
  };
  // What fails has been said.
  static_cast<void>(controller.perform("Writing a table", table.rowCount(), work));
}

}  // namespace tarvex
