#include "panels/prep/POutputSelection.h"

#include <QComboBox>
#include <QHeaderView>
#include <QKeySequence>
#include <QPushButton>
#include <algorithm>

#include "factors/FactorList.h"
#include "panels/prep/FactorTable.h"
#include "toolkit/TableView.h"
#include "toolkit/allow.h"

namespace tarvex {

POutputSelection::POutputSelection(const Display& display, std::shared_ptr<const FactorList> factors,
                                   std::int32_t order, QWidget* parent)
    : Panel(display, "POutputSelection", "OutSelection", "Output format selection", parent),
      factors_(std::move(factors)) {
  constexpr const char* kNone = "No available factors";
  auto* const view = gadget<TableView>("MaFactors");
  const bool empty = factors_->factorCount() == 0;
  view->setEmptyText(kNone);
  view->horizontalHeader()->setStretchLastSection(true);
  view->setSource(empty ? nullptr : std::make_shared<FactorTable>(factors_));
  gadget<QComboBox>("SelOrder")->setCurrentIndex(order);
  for (const char* const name : {"BScrollUp", "BScrollDown"})
    allow(*gadget<QPushButton>(name), empty ? kNone : QString());
  registerCallbacks({{"cancel", [this] { end(false); }},
                     {"selectFactor", [] {}},  // the table itself shows what is selected
                     {"scrollDown", [this] { scroll(1); }},
                     {"scrollUp", [this] { scroll(-1); }},
                     {"ok", [this] { end(true); }}});
  bindKey(QKeySequence(Qt::Key_Escape), [this] { end(false); });
}

std::int32_t POutputSelection::order() {
  return gadget<QComboBox>("SelOrder")->currentIndex();
}

void POutputSelection::scroll(int by) {
  auto* const view = gadget<TableView>("MaFactors");
  const int row = view->currentIndex().isValid() ? view->currentIndex().row() + by : 0;
  view->selectRow(std::clamp(row, 0, factors_->factorCount() - 1));
}

}  // namespace tarvex
