#include "panels/vels/PSaRandomSelect.h"

#include <QKeySequence>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <algorithm>

#include "postproc/SensitivityStats.h"
#include "toolkit/Notebook.h"
#include "toolkit/allow.h"

namespace tarvex {
namespace {

enum ComponentPage { kFactors, kVariables, kPages };

bool isIn(const std::vector<std::int32_t>& numbers, std::int32_t number) {
  return std::ranges::find(numbers, number) != numbers.end();
}

}  // namespace

PSaRandomSelect::PSaRandomSelect(const Display& display, const SensitivityStats& stats,
                                 const std::vector<std::string>& variables, const SaComponents& shown, QWidget* parent)
    : Panel(display, "PSaRandomSelect", "SelWin", "Select components", parent) {
  std::vector<Item> factors, outputs;
  for (std::size_t i = 0; i < stats.records.size(); ++i) {
    const auto number = static_cast<std::int32_t>(i);
    if (stats.records[i].kind == FactorKind::Uncertain)
      factors.push_back({stats.records[i].name, number, isIn(shown.records, number)});
    else
      without_.push_back(number);
  }
  offered_ = static_cast<int>(factors.size());
  for (std::size_t i = 0; i < variables.size(); ++i) {
    const auto number = static_cast<std::int32_t>(i);
    outputs.push_back({variables[i], number, isIn(shown.variables, number)});
  }
  addPage("&Factors", "Select the factors to be displayed :", "factors", factors);
  addPage("&Variables", "Select the variables to be displayed :", "variables", outputs);
  registerCallbacks({{"removeAll", [this] { move("SlSelected", "SlAvailable", true); }},
                     {"cancel", [this] { end(false); }},
                     {"selectSelected", [this] { refresh(); }},
                     {"ok", [this] { end(true); }},
                     {"selectAvailable", [this] { refresh(); }},
                     {"addAll", [this] { move("SlAvailable", "SlSelected", true); }},
                     {"left", [this] { move("SlSelected", "SlAvailable", false); }},
                     {"right", [this] { move("SlAvailable", "SlSelected", false); }},
                     {"changePage", [this] { refresh(); }}});
  bindKey(QKeySequence(Qt::Key_Escape), [this] { end(false); });
  refresh();
}

void PSaRandomSelect::addPage(const QString& label, const QString& prompt, const QString& what,
                              const std::vector<Item>& items) {
  auto* const notebook = gadget<Notebook>("NoSelect");
  QString problem;
  if (!notebook->addPage(display(), "PSaRandomSelectSubPage", label, problem)) return missing(problem);
  const int page = notebook->count() - 1;
  const auto say = [&](const char* name, const QString& text) {
    if (auto* const found = notebook->widget(page)->findChild<QLabel*>(name)) found->setText(text);
  };
  say("MlPrompt", prompt);
  say("FAvailable", "&Available " + what);
  say("FSelected", "&Selected " + what);
  for (const Item& item : items) {
    auto* const row = new QListWidgetItem(QString::fromStdString(item.name),
                                          list(page, item.selected ? "SlSelected" : "SlAvailable"));
    row->setData(Qt::UserRole, item.number);
  }
  for (const char* const name : {"SlAvailable", "SlSelected"})
    // Not by Enter, which accepts.
    connect(list(page, name), &QListWidget::itemDoubleClicked, this,
            [this, name] { call(QString(name) == "SlAvailable" ? "right" : "left"); });
}

// Both pages have gadgets of the same names.
QListWidget* PSaRandomSelect::list(int page, const char* name) {
  QWidget* const widget = gadget<Notebook>("NoSelect")->widget(page);
  auto* const found = widget != nullptr ? widget->findChild<QListWidget*>(name) : nullptr;
  return found != nullptr ? found : gadget<QListWidget>(name);
}

// Rows stand by their numbers on either side.
void PSaRandomSelect::move(const char* from, const char* to, bool all) {
  const int page = gadget<Notebook>("NoSelect")->currentIndex();
  QListWidget* const source = list(page, from);
  QListWidget* const target = list(page, to);
  for (int row = 0; row < source->count();) {
    if (!all && !source->item(row)->isSelected()) {
      ++row;
      continue;
    }
    QListWidgetItem* const item = source->takeItem(row);
    int at = target->count();
    while (at > 0 && target->item(at - 1)->data(Qt::UserRole).toInt() > item->data(Qt::UserRole).toInt()) --at;
    target->insertItem(at, item);
  }
  source->clearSelection();
  refresh();
}

std::vector<std::int32_t> PSaRandomSelect::numbers(int page) {
  std::vector<std::int32_t> numbers;
  const QListWidget* const selected = list(page, "SlSelected");
  for (int row = 0; row < selected->count(); ++row) numbers.push_back(selected->item(row)->data(Qt::UserRole).toInt());
  return numbers;
}

SaComponents PSaRandomSelect::components() {
  SaComponents chosen{numbers(kFactors), numbers(kVariables)};
  if (static_cast<int>(chosen.records.size()) == offered_) {
    chosen.records.insert(chosen.records.end(), without_.begin(), without_.end());
    std::ranges::sort(chosen.records);
  }
  return chosen;
}

void PSaRandomSelect::refresh() {
  auto* const notebook = gadget<Notebook>("NoSelect");
  for (int page = 0; page < notebook->count(); ++page) {
    const auto follow = [&](const char* button, bool possible, const QString& reason) {
      if (auto* const found = notebook->widget(page)->findChild<QPushButton*>(button))
        allow(*found, possible ? QString() : reason);
    };
    const QString select = "Select the rows that are to be moved.";
    follow("BRight", !list(page, "SlAvailable")->selectedItems().isEmpty(), select);
    follow("BLeft", !list(page, "SlSelected")->selectedItems().isEmpty(), select);
    follow("BAddAll", list(page, "SlAvailable")->count() > 0, "All are selected.");
    follow("BRemoveAll", list(page, "SlSelected")->count() > 0, "None is selected.");
  }
  const bool any = notebook->count() == kPages && list(kFactors, "SlSelected")->count() > 0 &&
                   list(kVariables, "SlSelected")->count() > 0;
  allow(*gadget<QPushButton>("BOk"), any ? QString() : "Select a factor and a variable at least.");
}

}  // namespace tarvex
