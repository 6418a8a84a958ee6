#include "panels/plots/PCobSelect.h"

#include <QComboBox>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>

#include "base/NumberText.h"
#include "plots/runPlots.h"
#include "toolkit/Dialogs.h"

namespace tarvex {
namespace {

constexpr int kDigits = 10;  // as many as a sample file has

QString text(double value) {
  return QString::fromStdString(numberText(value, kDigits));
}

}  // namespace

PCobSelect::PCobSelect(const Display& display, const RunTable& table, const std::vector<std::size_t>& columns,
                       const std::vector<RunRange>& filters, QWidget* parent)
    : Panel(display, "PCobSelect", "CobSelect", "Select runs", parent) {
  for (const std::size_t column : columns) {
    gadget<QComboBox>("OAxis")->addItem(QString::fromStdString(table.columns[column].label()));
    const auto [lower, upper] = finiteRange(table.columns[column]);
    const QString least = lower <= upper ? text(lower) : QString();
    const QString most = lower <= upper ? text(upper) : QString();
    Draft draft{least, most, least, most};
    Bounds bounds{column, std::nullopt};
    for (const RunRange& filter : filters) {
      if (filter.column != column) continue;
      bounds.filter.emplace(filter.lower, filter.upper);
      draft.lower = text(filter.lower);
      draft.upper = text(filter.upper);
    }
    bounds_.push_back(bounds);
    drafts_.push_back(std::move(draft));
  }
  registerCallbacks({{"choose", [this] { choose(); }},
                     {"edited", [this] { edited(); }},
                     {"reset", [this] { reset(); }},
                     {"apply", [this] { apply(); }},
                     {"cancel", [this] { end(false); }}});
  bindKey(QKeySequence(Qt::Key_Escape), [this] { end(false); });
  choose();
}

std::size_t PCobSelect::axis() {
  return static_cast<std::size_t>(std::max(0, gadget<QComboBox>("OAxis")->currentIndex()));
}

void PCobSelect::choose() {
  const Draft& draft = drafts_[axis()];
  gadget<QLabel>("MlRange")->setText(draft.fullLower.isEmpty() ? "no numbers"
                                                               : draft.fullLower + " to " + draft.fullUpper);
  gadget<QLineEdit>("NLowerBound")->setText(draft.lower);
  gadget<QLineEdit>("NUpperBound")->setText(draft.upper);
  edited();
}

void PCobSelect::edited() {
  drafts_[axis()].lower = gadget<QLineEdit>("NLowerBound")->text();
  drafts_[axis()].upper = gadget<QLineEdit>("NUpperBound")->text();
  Bounds bounds;
  gadget<QLabel>("MlMessage")->setText(read(axis(), bounds).trimmed());
}

void PCobSelect::reset() {
  for (Draft& draft : drafts_) {
    draft.lower = draft.fullLower;
    draft.upper = draft.fullUpper;
  }
  choose();
}

// Bounds that weren't touched stay what they are, to the last digit.
QString PCobSelect::read(std::size_t axis, Bounds& bounds) const {
  const Draft& draft = drafts_[axis];
  const Bounds& before = bounds_[axis];
  bounds = {before.column, std::nullopt};
  if (draft.lower == draft.fullLower && draft.upper == draft.fullUpper) return {};
  if (before.filter && draft.lower == text(before.filter->first) && draft.upper == text(before.filter->second)) {
    bounds = before;
    return {};
  }
  double lower = 0.0;
  double upper = 0.0;
  for (const auto& [field, value] : {std::pair(&draft.lower, &lower), std::pair(&draft.upper, &upper)})
    if (!isNumber(field->trimmed().toStdString(), *value)) return '\'' + *field + "' is no number.";
  if (const std::string_view problem = rangeProblem(lower, upper); !problem.empty())
    return QString::fromUtf8(problem.data(), static_cast<qsizetype>(problem.size()));
  bounds.filter.emplace(lower, upper);
  return {};
}

void PCobSelect::apply() {
  std::vector<Bounds> read(drafts_.size());
  for (std::size_t i = 0; i < drafts_.size(); ++i) {
    const QString problem = this->read(i, read[i]);
    if (problem.isEmpty()) continue;
    gadget<QComboBox>("OAxis")->setCurrentIndex(static_cast<int>(i));
    choose();
    Dialogs::current().message(DialogKind::Error, "Error", problem, window());
    return;
  }
  bounds_ = std::move(read);
  end(true);
}

}  // namespace tarvex
