// The page of quantiles: what is asked for, and what the runs say with which certainty.

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QTabWidget>

#include "app/RunController.h"
#include "base/NumberText.h"
#include "panels/vels/CellTable.h"
#include "panels/vels/PUaSingle.h"
#include "postproc/CriticalValues.h"
#include "toolkit/TableView.h"

namespace tarvex {
namespace {

constexpr double kPercent = 100.0;
constexpr double kConfidences[] = {0.9, 0.95, 0.99};

QString endText(const std::optional<double>& end) {
  return end ? statisticText(*end) : QString("too few runs");
}

// The numbers of a line, apart by blanks, semicolons or commas; false when one is none.
bool readNumbers(const QString& line, std::vector<double>& numbers) {
  static const QRegularExpression apart("[\\s;,]+");
  for (const QString& word : line.split(apart, Qt::SkipEmptyParts)) {
    double number = 0.0;
    if (!isNumber(word.toStdString(), number)) return false;
    numbers.push_back(number);
  }
  return true;
}

}  // namespace

void PUaSingle::prepareQuantiles() {
  QStringList percents;
  for (const double share : QuantileRequest().shares) percents << QString::number(share * kPercent);
  gadget<QLineEdit>("TShares")->setText(percents.join(' '));
  auto* const confidence = gadget<QComboBox>("OConfidence");
  for (const double level : kConfidences) confidence->addItem(QString::number(level), level);
  confidence->setCurrentText(QString::number(kUsualConfidence));
  gadget<TableView>("MaQuantiles")->setEmptyText("Write which percentages, or which values that are exceeded.");
}

void PUaSingle::pageChanged() {
  const int page = gadget<QTabWidget>("NoVariable")->currentIndex();
  if (page == kQuantilePage) quantiles();
  if (page == kTimesPage) showTimes();
}

bool PUaSingle::readRequest(QuantileRequest& request) {
  request.shares.clear();
  if (!readNumbers(gadget<QLineEdit>("TShares")->text(), request.shares) ||
      !readNumbers(gadget<QLineEdit>("TThresholds")->text(), request.thresholds))
    return false;
  for (double& share : request.shares) share /= kPercent;
  request.confidence = gadget<QComboBox>("OConfidence")->currentData().toDouble();
  return true;
}

void PUaSingle::quantiles() {
  QuantileRequest request;
  if (!readRequest(request)) return say("Numbers are needed, apart by blanks.");
  if (const std::string problem = request.problem(); !problem.empty()) return say(QString::fromStdString(problem));
  if (orderedVariable_ != variable_) {
    std::vector<double> column;
    if (!analysis_->table->getColumn(variable_, column))
      return say(QString::fromStdString(analysis_->table->errorText()));
    ordered_ = OrderedRuns(std::move(column));
    orderedVariable_ = variable_;
  }
  const VariableQuantiles found = quantilesOf(ordered_, request);
  std::vector<QStringList> cells;
  const auto add = [&cells](const QString& what, const Estimate& estimate) {
    cells.push_back({what, statisticText(estimate.value), endText(estimate.lower), endText(estimate.upper)});
  };
  for (std::size_t i = 0; i < request.shares.size(); ++i)
    add(QString::fromStdString(percentText(request.shares[i])), found.quantiles[i]);
  for (std::size_t i = 0; i < request.thresholds.size(); ++i)
    add("P(above " + QString::fromStdString(numberText(request.thresholds[i])) + ')', found.exceedances[i]);
  auto* const table = gadget<TableView>("MaQuantiles");
  table->setSource(std::make_shared<CellTable>(
      std::vector<CellTable::Column>{{"Quantile or probability", false}, {"Value"}, {"From"}, {"To"}}, cells));
  table->resizeColumnsToContents();
  if (!past_) say({});
  gadget<QLabel>("MlMethod")
      ->setText(QString("From %1 runs%2. Intervals of quantiles: %3; of probabilities: %4. %5")
                    .arg(found.runs)
                    .arg(found.missing > 0 ? QString(", %1 more have no number").arg(found.missing) : QString())
                    .arg(kQuantileMethod, kExceedanceMethod)
                    .arg(QString::fromStdString(intervalCaution(methodId_))));
}

}  // namespace tarvex
