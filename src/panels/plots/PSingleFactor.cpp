#include "panels/plots/PSingleFactor.h"

#include <QComboBox>

#include "toolkit/longNames.h"

namespace tarvex {

PSingleFactor::PSingleFactor(ResultDesk& desk, std::shared_ptr<Selection> selection, std::size_t column)
    : PHistogram(desk, std::move(selection), "PSingleFactor", "SingleFactor") {
  auto* const columns = gadget<QComboBox>("OFactor");
  for (const RunColumn& each : table().columns) addName(*columns, QString::fromStdString(each.label()));
  columns->setCurrentIndex(static_cast<int>(column));
  start(
      {column},
      {{"choose", [this, columns] { showColumns({static_cast<std::size_t>(std::max(0, columns->currentIndex()))}); }}});
}

void PSingleFactor::showColumns(std::vector<std::size_t> columns) {
  gadget<QComboBox>("OFactor")->setCurrentIndex(static_cast<int>(columns.front()));
  PHistogram::showColumns(std::move(columns));
}

}  // namespace tarvex
