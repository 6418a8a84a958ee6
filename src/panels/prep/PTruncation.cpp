#include "panels/prep/PTruncation.h"

#include <QCheckBox>
#include <QHeaderView>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <algorithm>

#include "base/NumberText.h"
#include "factors/TruncatedDistribution.h"
#include "panels/help/PHelp.h"
#include "toolkit/Dialogs.h"
#include "toolkit/TableView.h"

namespace tarvex {
namespace {

constexpr const char* kRefused = "Error setting default truncations";

QString number(double value) {
  return QString::fromStdString(numberText(value));
}

// The truncated factors of a list with what they have.
class TruncationTable : public TableSource {
 public:
  void add(const Factor& factor) {
    const auto& truncated = static_cast<const TruncatedDistribution&>(factor);
    rows_.push_back({factor.name, truncated.leftTruncation(), truncated.rightTruncation()});
  }
  int rows() const override { return static_cast<int>(rows_.size()); }
  int columns() const override { return 3; }
  QString header(int column) const override { return column == 0 ? "Factor" : column == 1 ? "Left" : "Right"; }
  bool isNumeric(int column) const override { return column > 0; }
  QString text(int row, int column) const override {
    return column > 0 ? tarvex::number(number(row, column)) : QString::fromStdString(at(row).name);
  }
  double number(int row, int column) const override { return column == 1 ? at(row).left : at(row).right; }

 private:
  struct Row {
    std::string name;
    double left, right;
  };
  const Row& at(int row) const { return rows_[static_cast<std::size_t>(row)]; }

  std::vector<Row> rows_;
};

}  // namespace

PTruncation::PTruncation(const Display& display, const FactorList& factors, QWidget* parent)
    : Panel(display, "PTruncation", "Truncation", "Default truncation values", parent) {
  const auto table = std::make_shared<TruncationTable>();
  for (std::int32_t i = 0; i < factors.factorCount(); ++i) {
    if (dynamic_cast<const TruncatedDistribution*>(&factors.factor(i)) == nullptr) continue;
    table->add(factors.factor(i));
    truncated_.push_back(i);
  }
  auto* const view = gadget<TableView>("MaFactors");
  view->setEmptyText("No factor of the list has truncations.");
  view->horizontalHeader()->setStretchLastSection(true);
  view->setSource(table);
  const double left = TruncatedDistribution::defaultLeftTruncation();
  const double right = TruncatedDistribution::defaultRightTruncation();
  gadget<QLabel>("MlTruncation")->setText(QString::asprintf("Truncation: %.3f - %.3f", left, right));
  gadget<QLineEdit>("NLeftTrunc")->setText(number(left));
  gadget<QLineEdit>("NRightTrunc")->setText(number(right));
  registerCallbacks(
      {{"cancel", [this] { end(false); }}, {"ok", [this] { ok(); }}, {"help", [this] { help(); }}, {"edited", [this] {
                                                                                                      edited();
                                                                                                    }}});
  bindKey(QKeySequence(Qt::Key_Escape), [this] { end(false); });
}

bool PTruncation::read(double& left, double& right) {
  return isNumber(gadget<QLineEdit>("NLeftTrunc")->text().toStdString(), left) &&
         isNumber(gadget<QLineEdit>("NRightTrunc")->text().toStdString(), right);
}

std::vector<int> PTruncation::selectedPlaces() {
  auto* const view = gadget<TableView>("MaFactors");
  std::vector<int> places;
  for (const QItemSelectionRange& range : view->selectionModel()->selection())
    for (int row = range.top(); row <= range.bottom(); ++row)
      places.push_back(truncated_[static_cast<std::size_t>(view->tableModel().sourceRow(row))]);
  std::ranges::sort(places);
  places.erase(std::unique(places.begin(), places.end()), places.end());
  return places;
}

// The defaults themselves are the judge; what they were is put back.
void PTruncation::edited() {
  const double before = TruncatedDistribution::defaultLeftTruncation();
  const double after = TruncatedDistribution::defaultRightTruncation();
  double left = 0.0;
  double right = 0.0;
  const bool taken = read(left, right) && TruncatedDistribution::setDefaultTruncations(left, right);
  static_cast<void>(TruncatedDistribution::setDefaultTruncations(before, after));  // they were in force
  gadget<QLabel>("MlMessage")
      ->setText(taken ? QString() : "Both lie between 0 and 1, the left one below the right one.");
}

void PTruncation::ok() {
  const auto refuse = [this](const char* text) {
    Dialogs::current().message(DialogKind::Error, "Error", text, window());
  };
  const bool forSelected = gadget<QCheckBox>("ChSelected")->isChecked();
  const std::vector<int> places = forSelected ? selectedPlaces() : std::vector<int>();
  if (forSelected && places.empty()) return refuse("   No factor selected");
  double left = 0.0;
  double right = 0.0;
  if (!read(left, right) || !TruncatedDistribution::setDefaultTruncations(left, right)) return refuse(kRefused);
  left_ = left;
  right_ = right;
  places_ = places;
  end(true);
}

void PTruncation::help() {
  if (helpOpen_) return;
  helpOpen_ = true;
  const std::unique_ptr<PHelp> hint = PHelp::hintOf(display(), "PTruncation", window());
  hint->centre();
  static_cast<void>(hint->runModal());  // where its file is missing, that has been said
  helpOpen_ = false;
}

}  // namespace tarvex
