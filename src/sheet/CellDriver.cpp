#include "sheet/CellDriver.h"

#include <algorithm>
#include <numeric>
#include <tuple>

namespace tarvex::office {

namespace {

using namespace com::sun::star;  // NOLINT(google-build-using-namespace): the interfaces live five levels deep

using Order = std::vector<std::size_t>;

// Parts what is in order into chains of neighbours.
template <class Neighbours>
std::vector<Order> chains(const Order& order, Neighbours areNeighbours) {
  std::vector<Order> found;
  for (const std::size_t cell : order) {
    if (found.empty() || !areNeighbours(found.back().back(), cell)) found.emplace_back();
    found.back().push_back(cell);
  }
  return found;
}

}  // namespace

std::vector<CellDriver::Group> CellDriver::grouped(const Workbook& workbook, const std::vector<CellPlace>& places) {
  Order order(places.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::ranges::sort(order, {},
                    [&](std::size_t i) { return std::tuple(places[i].sheet, places[i].column, places[i].row); });
  const std::vector<Order> down = chains(order, [&](std::size_t a, std::size_t b) {
    return places[a].sheet == places[b].sheet && places[a].column == places[b].column &&
           places[a].row + 1 == places[b].row;
  });
  Order single;
  std::vector<Group> groups;
  const auto add = [&](const Order& cells, bool isRow) {
    const CellPlace& first = places[cells.front()];
    const CellPlace& last = places[cells.back()];
    Group group;
    group.range = workbook.cells(first, last.row - first.row + 1, last.column - first.column + 1);
    group.cells = cells;
    group.isRow = isRow;
    group.name = workbook.sheetName(first.sheet) + '!' + cellName(first.row, first.column) +
                 (cells.size() > 1 ? ':' + cellName(last.row, last.column) : "");
    const auto length = static_cast<sal_Int32>(cells.size());
    group.data.realloc(isRow ? 1 : length);
    for (uno::Sequence<uno::Any>& row : group.data) row.realloc(isRow ? length : 1);
    groups.push_back(std::move(group));
  };
  for (const Order& cells : down)
    if (cells.size() > 1)
      add(cells, false);
    else
      single.push_back(cells.front());
  std::ranges::sort(single, {},
                    [&](std::size_t i) { return std::tuple(places[i].sheet, places[i].row, places[i].column); });
  for (const Order& cells : chains(single, [&](std::size_t a, std::size_t b) {
         return places[a].sheet == places[b].sheet && places[a].row == places[b].row &&
                places[a].column + 1 == places[b].column;
       }))
    add(cells, true);
  return groups;
}

void CellDriver::bind(const Workbook& workbook, const std::vector<CellPlace>& inputs,
                      const std::vector<CellPlace>& outputs) {
  inputs_ = grouped(workbook, inputs);
  outputs_ = grouped(workbook, outputs);
  inputCount_ = inputs.size();
  workbook.computeAtOnce();
}

void CellDriver::drive(const CellBlock& given, CellBlock& block) {
  if (static_cast<std::size_t>(given.columns) != inputCount_) throw Failure{"Request drive without its cells"};
  bool isWhole = true;
  for (std::int32_t row = 0; row < given.rows && isWhole; ++row) {
    const std::size_t start = static_cast<std::size_t>(row) * inputCount_;
    for (Group& group : inputs_) {
      for (std::size_t i = 0; i < group.cells.size(); ++i) {
        const double value = std::get<double>(given.cells[start + group.cells[i]]);
        const auto at = static_cast<sal_Int32>(i);
        (group.isRow ? group.data[0][at] : group.data[at][0]) <<= value;
      }
      try {
        group.range->setDataArray(group.data);
      } catch (const uno::RuntimeException&) {
        throw Failure{"Cells of the workbook cannot be written. Are they protected?\n" + group.name};
      }
    }
    const std::size_t first = block.cells.size();
    block.cells.resize(first + static_cast<std::size_t>(block.columns));
    for (const Group& group : outputs_) {
      const uno::Sequence<uno::Sequence<uno::Any>> data = group.range->getDataArray();
      for (std::size_t i = 0; i < group.cells.size(); ++i) {
        const auto at = static_cast<sal_Int32>(i);
        SheetCell& cell = block.cells[first + group.cells[i]];
        cell = cellOf(group.isRow ? data[0][at] : data[at][0]);
        isWhole = isWhole && std::holds_alternative<double>(cell);
      }
    }
    ++block.rows;
  }
}

}  // namespace tarvex::office
