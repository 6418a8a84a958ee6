#include "panels/vels/PUaSelect.h"

#include <QKeySequence>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <algorithm>

#include "toolkit/allow.h"

namespace tarvex {
namespace {

constexpr int kPlace = Qt::UserRole;
constexpr const char* kAvailable = "SlAvailable";
constexpr const char* kSelected = "SlSelected";

}  // namespace

PUaSelect::PUaSelect(const Display& display, const std::vector<std::string>& names, const std::vector<int>& selected,
                     const Prompts& prompts, QWidget* parent)
    : Panel(display, "PUaSelect", "SelWin", prompts.title, parent) {
  gadget<QLabel>("LAvailable")->setText(prompts.available);
  gadget<QLabel>("LSelected")->setText(prompts.selected);
  gadget<QLabel>("MlPrompt")->setText(prompts.prompt);
  const auto add = [&](const char* list, int place) {
    auto* const item =
        new QListWidgetItem(QString::fromStdString(names[static_cast<std::size_t>(place)]), gadget<QListWidget>(list));
    item->setData(kPlace, place);
  };
  for (int place = 0; place < static_cast<int>(names.size()); ++place)
    if (std::ranges::find(selected, place) == selected.end()) add(kAvailable, place);
  for (const int place : selected)
    if (place >= 0 && static_cast<std::size_t>(place) < names.size()) add(kSelected, place);
  registerCallbacks({{"ok", [this] { ok(); }},
                     {"selectSelected", [this] { refresh(); }},
                     {"left", [this] { move(kSelected, kAvailable, false); }},
                     {"selectAvailable", [this] { refresh(); }},
                     {"cancel", [this] { end(false); }},
                     {"removeAll", [this] { move(kSelected, kAvailable, true); }},
                     {"right", [this] { move(kAvailable, kSelected, false); }},
                     {"addAll", [this] { move(kAvailable, kSelected, true); }}});
  // Not by Enter, which accepts.
  connect(gadget<QListWidget>(kAvailable), &QListWidget::itemDoubleClicked, this, [this] { call("right"); });
  connect(gadget<QListWidget>(kSelected), &QListWidget::itemDoubleClicked, this, [this] { call("left"); });
  bindKey(QKeySequence(Qt::Key_Escape), [this] { end(false); });
  refresh();
}

std::vector<int> PUaSelect::selected() {
  const auto* const list = gadget<QListWidget>(kSelected);
  std::vector<int> places;
  for (int row = 0; row < list->count(); ++row) places.push_back(list->item(row)->data(kPlace).toInt());
  return places;
}

// What comes back to the left stands in its old order there.
void PUaSelect::move(const char* from, const char* to, bool all) {
  auto* const source = gadget<QListWidget>(from);
  auto* const target = gadget<QListWidget>(to);
  for (int row = 0; row < source->count();) {
    if (!all && !source->item(row)->isSelected()) {
      ++row;
      continue;
    }
    QListWidgetItem* const item = source->takeItem(row);
    int place = target->count();
    while (target == gadget<QListWidget>(kAvailable) && place > 0 &&
           target->item(place - 1)->data(kPlace).toInt() > item->data(kPlace).toInt())
      --place;
    target->insertItem(place, item);
  }
  source->clearSelection();
  refresh();
}

void PUaSelect::refresh() {
  const auto follow = [this](const char* one, const char* all, const char* list) {
    const auto* const rows = gadget<QListWidget>(list);
    const QString empty = rows->count() == 0 ? QString("The list is empty.") : QString();
    allow(*gadget<QPushButton>(all), empty);
    allow(*gadget<QPushButton>(one), !empty.isEmpty()                  ? empty
                                     : rows->selectedItems().isEmpty() ? QString("Mark the rows that are to be moved.")
                                                                       : QString());
  };
  follow("BRight", "BAddAll", kAvailable);
  follow("BLeft", "BRemoveAll", kSelected);
  gadget<QLabel>("MlMessage")
      ->setText(gadget<QListWidget>(kSelected)->count() == 0 ? "Nothing is selected." : QString());
}

void PUaSelect::ok() {
  if (gadget<QListWidget>(kSelected)->count() > 0) end(true);
}

}  // namespace tarvex
