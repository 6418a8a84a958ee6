#include "panels/model/PTryRun.h"

#include <QComboBox>
#include <QFontDatabase>
#include <QKeySequence>
#include <QLabel>
#include <QPlainTextEdit>
#include <QSpinBox>
#include <QTextBlock>
#include <QTextEdit>
#include <algorithm>
#include <limits>
#include <utility>

#include "base/NumberText.h"
#include "toolkit/Application.h"
#include "toolkit/TableView.h"
#include "toolkit/allow.h"

namespace tarvex {
namespace {

// A value for each output, time after time.
class UnderstoodTable : public TableSource {
 public:
  explicit UnderstoodTable(const TrialReport& report) : report_(report) {}

  int rows() const override { return static_cast<int>(report_.values.size()); }
  int columns() const override { return report_.times.empty() ? 2 : 3; }
  QString header(int column) const override {
    return column == 0 ? "Output" : column == columns() - 1 ? "Value" : "Time";
  }
  bool isNumeric(int column) const override { return column > 0; }
  QString text(int row, int column) const override {
    const std::size_t output = static_cast<std::size_t>(row) % report_.names.size();
    if (column == 0) return QString::fromStdString(report_.names[output]);
    if (column == columns() - 1 && output < report_.reasons.size() && !report_.reasons[output].empty())
      return QString::fromStdString(report_.reasons[output]);
    return QString::fromStdString(numberText(number(row, column)));
  }
  double number(int row, int column) const override {
    const auto place = static_cast<std::size_t>(row);
    if (column == 0) return std::numeric_limits<double>::quiet_NaN();
    return column == columns() - 1 ? report_.values[place] : report_.times[place / report_.names.size()];
  }

 private:
  TrialReport report_;
};

}  // namespace

PTryRun::PTryRun(const Display& display, const ModelChoice& choice, ModelContext context, QWidget* parent)
    : Panel(display, "PTryRun", "PTryRun", "Try one run", parent), choice_(choice), context_(std::move(context)) {
  gadget<QComboBox>("OTrial")->addItems({"Row of the sample", "Means"});
  gadget<QComboBox>("OTrial")->setCurrentIndex(context_.rows > 0 ? 0 : 1);
  gadget<QSpinBox>("NTrialRow")->setRange(1, std::max(context_.rows, 1));
  for (const char* const name : {"TePrinted", "TeOutput"})
    gadget<QPlainTextEdit>(name)->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  gadget<QPlainTextEdit>("TePrinted")->setPlaceholderText("What the model prints appears here.");
  gadget<QPlainTextEdit>("TeOutput")->setPlaceholderText("The model's output file appears here.");
  gadget<TableView>("MaUnderstood")->setEmptyText("The values that were read appear here.");
  registerCallbacks({{"trialRow", [this] { trialRow(); }},
                     {"tryRun", [this] { tryRun(); }},
                     {"stop", [this] { stop(); }},
                     {"close", [this] { close(); }}});
  bindKey(QKeySequence(Qt::Key_Escape), [this] { isRunning_ ? stop() : close(); });
  refresh();
  gadget<QWidget>("BRun")->setFocus();
}

void PTryRun::trialRow() {
  refresh();
}

void PTryRun::stop() {
  goesOn_ = false;
}

bool PTryRun::closing() {
  stop();
  return !isRunning_ && Panel::closing();
}

void PTryRun::close() {
  stop();
  if (!isRunning_) end(true);
}

void PTryRun::tryRun() {
  if (isRunning_ || !context_.tryModel) return;
  const bool isRow = gadget<QComboBox>("OTrial")->currentIndex() == 0;
  const int row = isRow ? gadget<QSpinBox>("NTrialRow")->value() - 1 : TrialRow::kMeans;
  report_ = {};
  showReport();
  isRunning_ = goesOn_ = true;
  refresh();
  gadget<QLabel>("MlOutcome")->setText("The model runs.");
  TrialReport report;
  context_.tryModel(
      choice_, row,
      [this] {
        Application::drainEvents();
        return goesOn_;
      },
      report);
  isRunning_ = false;
  report_ = std::move(report);
  showReport();
  refresh();
}

QString PTryRun::outcome() const {
  QString text = report_.isGood ? "Understood" : "Failed";
  if (report_.exitCode) text += QString(", exit code %1").arg(*report_.exitCode);
  text += ", " + QString::number(report_.seconds, 'g', 3) + " s";
  if (!report_.row.title.empty()) text += ", at " + QString::fromStdString(report_.row.title);
  return text;
}

void PTryRun::showReport() {
  gadget<QLabel>("MlOutcome")->setText(report_.isGood || !report_.problem.empty() ? outcome() : QString());
  gadget<QLabel>("MlCommand")
      ->setText(report_.command.empty() ? QString()
                                        : QString::fromStdString(report_.command + "\nin " + report_.directory));
  const std::string& said = report_.problem.empty() ? report_.warnings : report_.problem;
  gadget<QLabel>("MlMessage")->setText(QString::fromStdString(said).trimmed());
  gadget<QPlainTextEdit>("TePrinted")->setPlainText(QString::fromStdString(report_.printed));
  showOutput();
  gadget<TableView>("MaUnderstood")->setSource(std::make_shared<UnderstoodTable>(report_));
}

// The file with its numbers of lines, and the first line that doesn't fit marked.
void PTryRun::showOutput() {
  auto* const field = gadget<QPlainTextEdit>("TeOutput");
  QStringList lines;
  for (std::size_t i = 0; i < report_.lines.size(); ++i)
    lines << QString("%1  %2").arg(report_.firstLine + i, 4).arg(QString::fromStdString(report_.lines[i]));
  if (report_.badLine == report_.firstLine + report_.lines.size())
    lines << QString("%1  (the file ends here)").arg(report_.badLine, 4);
  field->setPlainText(lines.join('\n'));
  QList<QTextEdit::ExtraSelection> marks;
  if (report_.badLine >= report_.firstLine && !lines.isEmpty()) {
    const QTextBlock block =
        field->document()->findBlockByNumber(static_cast<int>(report_.badLine - report_.firstLine));
    QTextEdit::ExtraSelection mark;
    mark.cursor = QTextCursor(block);
    mark.format.setProperty(QTextFormat::FullWidthSelection, true);
    mark.format.setBackground(field->palette().highlight());
    mark.format.setForeground(field->palette().highlightedText());
    marks << mark;
    field->setTextCursor(mark.cursor);
    field->centerCursor();
  }
  field->setExtraSelections(marks);
}

void PTryRun::refresh() {
  const bool isRow = gadget<QComboBox>("OTrial")->currentIndex() == 0;
  const QString running = isRunning_ ? QString("The model runs.") : QString();
  const QString noSample = context_.rows > 0 ? QString() : QString("There is no sample yet.");
  allow(*gadget<QWidget>("BRun"), running);
  allow(*gadget<QWidget>("BStop"), isRunning_ ? QString() : QString("Nothing runs."));
  allow(*gadget<QWidget>("OTrial"), running);
  allow(*gadget<QWidget>("NTrialRow"), !running.isEmpty()    ? running
                                       : !noSample.isEmpty() ? noSample
                                       : isRow               ? QString()
                                                             : QString("The means are chosen."));
}

}  // namespace tarvex
