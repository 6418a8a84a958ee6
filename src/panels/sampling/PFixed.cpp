#include "panels/sampling/PFixed.h"

#include <QLabel>
#include <QLineEdit>
#include <algorithm>
#include <cmath>

#include "base/NumberText.h"
#include "base/RememberedDirectories.h"
#include "factors/Distribution.h"
#include "factors/FactorList.h"
#include "panels/main/PanelWork.h"
#include "sampling/FixedSampler.h"
#include "sampling/RowsFile.h"
#include "toolkit/Dialogs.h"
#include "toolkit/TableView.h"

namespace tarvex {
namespace {

FileChoice rowsFile(const char* title, FileChoice::Purpose purpose) {
  return {title,
          {{"*.csv", "comma-separated values"}, {"*.*", "all files"}},
          QString::fromStdString(RememberedDirectories::get(RememberedDirectories::Prep)),
          purpose,
          "csv"};
}

FixedTable::Rows rowsOf(const MethodContext& context, const std::vector<double>& usual) {
  FixedTable::Rows rows;
  const auto* const fixed = dynamic_cast<const FixedSampler*>(context.current);
  if (fixed != nullptr && fixed->values().columns() == context.factors->factorCount())
    for (std::int32_t i = 0; i < fixed->values().rows(); ++i) rows.push_back(fixed->copyRow(i));
  if (rows.empty()) rows.push_back(usual);
  return rows;
}

QString numberOf(double value) {
  return std::isfinite(value) ? QString::fromStdString(numberText(value)) : QString();
}

}  // namespace

PFixed::PFixed(const Display& display, const MethodContext& context, const std::vector<double>& usual, QWidget* parent)
    : PMethod(display, methodKind(kFixed), context, parent, Member()),
      table_(std::make_shared<FixedTable>(factors(), usual)) {
  table_->take(rowsOf(context, usual));
  view()->setEmptyText("There is no run yet: add one, paste some, or load them from a file.");
  if (isDemo())
    view()->setSource(table_);
  else
    view()->setEditable(table_);
  connect(view(), &TableView::edited, this, [this] {
    edited();
    scrollTitle();
  });
  connect(view(), &TableView::refused, this, [this](const QString& why) {
    if (!why.isEmpty()) tell("Error", why);
  });
  start({{"add", [this] { add(); }},
         {"remove", [this] { remove(); }},
         {"load", [this] { load(); }},
         {"save", [this] { save(); }},
         {"scrollTitle", [this] { scrollTitle(); }}});
  view()->setFocus();
  selectRow(0);
}

TableView* PFixed::view() {
  return gadget<TableView>("MaSamples");
}

SamplerSettings PFixed::read(Refusal& refusal) {
  SamplerSettings settings;
  settings.method = kFixed;
  settings.listing = opened().listing;
  if (!table_->read(settings.rows.emplace(), refusal.text)) refusal.where = view();
  return settings;
}

// Only the number of runs, so that it needs no store.
std::unique_ptr<Sampler> PFixed::draft(Refusal& refusal) {
  const SamplerSettings settings = read(refusal);
  if (!refusal.text.isEmpty()) return nullptr;
  auto sampler = std::make_unique<FixedSampler>();
  sampler->numSamples = table_->rows();
  return sampler;
}

// Whatever keys are held down.
void PFixed::selectRow(int row) {
  view()->selectionModel()->setCurrentIndex(view()->model()->index(row, 0), QItemSelectionModel::ClearAndSelect);
}

void PFixed::rowsChanged(int selected) {
  view()->tableModel().sourceChanged();
  if (selected >= 0 && selected < table_->rows()) selectRow(selected);
  edited();
  scrollTitle();
}

void PFixed::add() {
  const QModelIndex current = view()->currentIndex();
  const int row = current.isValid() ? view()->tableModel().sourceRow(current.row()) + 1 : table_->rows();
  table_->insertRow(row);
  rowsChanged(row);
}

void PFixed::remove() {
  std::vector<int> rows;
  for (const QItemSelectionRange& range : view()->selectionModel()->selection())
    for (int row = range.top(); row <= range.bottom(); ++row) rows.push_back(view()->tableModel().sourceRow(row));
  if (rows.empty()) return tell("Error", "No row selected");
  std::ranges::sort(rows, std::greater<>());
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
  for (const int row : rows) table_->removeRow(row);
  rowsChanged(std::min(rows.back(), table_->rows() - 1));
}

void PFixed::load() {
  const auto chosen =
      Dialogs::current().chooseFile(rowsFile("Load the runs of a sample", FileChoice::Purpose::Open), window());
  if (!chosen) return;
  FixedTable::Rows rows;
  std::string message;
  bool taken = false;
  {
    const PanelWork work(display(), "Reading a sample", window());
    taken = readRowsFile(chosen->path.toStdString(), factors(), rows, message, work.progress());
    if (work.stopped()) return;
  }
  if (!taken) return tell("Error", "Error reading samples file\n" + QString::fromStdString(message));
  table_->take(rows);
  rowsChanged(0);
}

void PFixed::save() {
  Refusal refusal;
  const SamplerSettings settings = read(refusal);
  if (!refusal.text.isEmpty()) return tell("Error", refusal.text);
  const auto chosen =
      Dialogs::current().chooseFile(rowsFile("Save the runs of the sample", FileChoice::Purpose::Save), window());
  std::string message;
  if (chosen && !saveRowsFile(chosen->path.toStdString(), factors(), *settings.rows, message))
    tell("Error", "I cannot save the file\n" + QString::fromStdString(message));
}

// What the cell that is selected says of its factor; the factor's title is brought into view with it.
void PFixed::scrollTitle() {
  const QModelIndex at = view()->currentIndex();
  const bool isSelected = at.isValid() && view()->selectionModel()->hasSelection();
  const Factor* const factor = isSelected ? &factors().factor(at.column()) : nullptr;
  const double value = isSelected ? table_->number(view()->tableModel().sourceRow(at.row()), at.column()) : NAN;
  const auto* const distribution = std::isfinite(value) ? dynamic_cast<const Distribution*>(factor) : nullptr;
  gadget<QLabel>("MlFactorType")->setText(isSelected ? QString::fromStdString(factor->typeName) : QString());
  gadget<QLineEdit>("NValue")->setText(numberOf(value));
  gadget<QLineEdit>("NDensity")->setText(distribution != nullptr ? numberOf(distribution->density(value)) : QString());
  gadget<QLineEdit>("NProbability")
      ->setText(distribution != nullptr ? numberOf(distribution->cumulative(value)) : QString());
  if (isSelected) view()->scrollTo(at);
}

}  // namespace tarvex
