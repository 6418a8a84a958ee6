#include "panels/sampling/PGroupSelect.h"

#include <QKeySequence>
#include <QListWidget>
#include <QPushButton>

#include "toolkit/allow.h"

namespace tarvex {

PGroupSelect::PGroupSelect(const Display& display, const NamedGroup& group, const std::vector<std::string>& available,
                           QWidget* parent)
    : Panel(display, "PGroupSelect", "selGroup", "Select members of " + QString::fromStdString(group.name), parent) {
  for (const std::string& name : available) gadget<QListWidget>("SlAvailable")->addItem(QString::fromStdString(name));
  for (const std::string& name : group.factors)
    gadget<QListWidget>("SlSelected")->addItem(QString::fromStdString(name));
  refresh();
  registerCallbacks({{"selectAvailable", [this] { refresh(); }},
                     {"selectSelected", [this] { refresh(); }},
                     {"right", [this] { move("SlAvailable", "SlSelected"); }},
                     {"left", [this] { move("SlSelected", "SlAvailable"); }},
                     {"cancel", [this] { end(false); }},
                     {"ok", [this] { end(true); }}});
  // Not by Enter, which accepts.
  connect(gadget<QListWidget>("SlAvailable"), &QListWidget::itemDoubleClicked, this, [this] { call("right"); });
  connect(gadget<QListWidget>("SlSelected"), &QListWidget::itemDoubleClicked, this, [this] { call("left"); });
  bindKey(QKeySequence(Qt::Key_Escape), [this] { end(false); });
  gadget<QListWidget>("SlAvailable")->setFocus();
}

std::vector<std::string> PGroupSelect::members() {
  const auto* const list = gadget<QListWidget>("SlSelected");
  std::vector<std::string> names;
  for (int row = 0; row < list->count(); ++row) names.push_back(list->item(row)->text().toStdString());
  return names;
}

void PGroupSelect::move(const char* from, const char* to) {
  auto* const source = gadget<QListWidget>(from);
  for (int row = 0; row < source->count();) {
    if (source->item(row)->isSelected())
      gadget<QListWidget>(to)->addItem(source->takeItem(row));
    else
      ++row;
  }
  source->clearSelection();
  refresh();
}

void PGroupSelect::refresh() {
  const auto followSelection = [this](const char* button, const char* list) {
    const bool isSelected = !gadget<QListWidget>(list)->selectedItems().isEmpty();
    allow(*gadget<QPushButton>(button), isSelected ? QString() : "Select the factors that are to be moved.");
  };
  followSelection("BRight", "SlAvailable");
  followSelection("BLeft", "SlSelected");
}

}  // namespace tarvex
