#include "panels/prep/PVisInputFactors.h"

#include <QHeaderView>
#include <QKeySequence>
#include <QPushButton>

#include "panels/prep/FactorTable.h"
#include "panels/prep/PInspector.h"
#include "toolkit/TableView.h"
#include "toolkit/allow.h"

namespace tarvex {

PVisInputFactors::PVisInputFactors(const Display& display, std::shared_ptr<const FactorList> factors, QWidget* parent)
    : Panel(display, "PVisInputFactors", "VisInputFactors", "Available factors", parent), factors_(std::move(factors)) {
  auto* const view = gadget<TableView>("MaFactors");
  view->setSource(std::make_shared<FactorTable>(factors_));
  view->horizontalHeader()->setStretchLastSection(true);
  registerCallbacks({{"selectItem", [this] { selectItem(); }}, {"exit", [this] { end(true); }}, {"visualize", [this] {
                                                                                                   visualize();
                                                                                                 }}});
  bindKey(QKeySequence(Qt::Key_Escape), [this] { end(true); });
  view->selectRow(0);
  selectItem();
}

void PVisInputFactors::selectItem() {
  auto* const view = gadget<TableView>("MaFactors");
  const QModelIndex current = view->currentIndex();
  const int place = current.isValid() ? view->tableModel().sourceRow(current.row()) : -1;
  selected_ = place < factors_->factorCount() ? place : -1;
  allow(*gadget<QPushButton>("BVisualize"), selected_ < 0 ? "No factor is selected." : QString());
}

void PVisInputFactors::visualize() {
  selectItem();
  if (selected_ < 0) return;
  PInspector panel(display(), factors_->factor(selected_), window());
  panel.centre();
  static_cast<void>(panel.runModal());  // where its file is missing, that has been said
}

}  // namespace tarvex
