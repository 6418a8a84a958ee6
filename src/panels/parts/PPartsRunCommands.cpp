// What is asked of a run in parts, and of what it gave.

#include <QLabel>
#include <QTabWidget>
#include <QTime>

#include "app/PartsRequest.h"
#include "app/PartsResults.h"
#include "app/RunController.h"
#include "base/NumberText.h"
#include "panels/main/PanelWork.h"
#include "panels/parts/PPartsRun.h"
#include "panels/vels/CellTable.h"
#include "toolkit/Dialogs.h"
#include "toolkit/SquareField.h"
#include "toolkit/TableView.h"

namespace tarvex {
namespace {

// The outputs over the runs that are there; every copy of it says that it is partial.
std::shared_ptr<TableSource> soFarTable(const std::vector<OutputSoFar>& outputs, const QString& runs) {
  std::vector<QStringList> cells;
  for (const OutputSoFar& output : outputs) {
    QStringList row(QString::fromStdString(output.name));
    for (const double value :
         {static_cast<double>(output.runs), output.mean, output.deviation, output.minimum, output.maximum})
      row << QString::fromStdString(numberText(value));
    cells.push_back(std::move(row));
  }
  const std::vector<CellTable::Column> columns = {
      {"Partial, " + runs, false}, {"Runs"}, {"Mean"}, {"Deviation"}, {"Minimum"}, {"Maximum"}};
  return std::make_shared<CellTable>(columns, std::move(cells));
}

}  // namespace

std::vector<std::string> PPartsRun::failedParts() const {
  std::vector<std::string> numbers;
  for (std::size_t part = 0; part < run_.states().size(); ++part) {
    const PartState::Stage stage = run_.states()[part].stage;
    if (stage == PartState::Failed || stage == PartState::Missing) numbers.push_back(std::to_string(part));
  }
  return numbers;
}

// Carries out a command of tarvex-batch while the panel waits.
bool PPartsRun::command(const std::vector<std::string>& words, const char* what) {
  if (working_) return false;
  working_ = true;
  std::string said;
  bool done = false;
  bool stopped = false;
  {
    const PanelWork work(display(), what, window());
    done = runBatch(
        words, controller_.mainDirectory(), [&work] { return work.progress().report(0.0); }, said);
    stopped = work.stopped();
  }
  working_ = false;
  if (!done && !stopped) Dialogs::current().message(DialogKind::Error, "Error", QString::fromStdString(said), window());
  if (done) takes_ = true;
  if (!done) asked_.invalidate();
  timer_.start();
  look();
  return done;
}

void PPartsRun::retry() {
  const int part = gadget<SquareField>("FdParts")->selected();
  asked_.start();
  static_cast<void>(command({"resume", run_.directory().path(), "--only", std::to_string(part), "--detach"},
                            "A part is repeated"));  // the message has been shown
}

void PPartsRun::retryAll() {
  std::vector<std::string> words = {"resume", run_.directory().path(), "--detach"};
  for (const std::string& part : failedParts()) words.insert(words.end(), {"--only", part});
  asked_.start();
  static_cast<void>(command(words, "Parts are repeated"));  // the message has been shown
}

void PPartsRun::goOn() {
  asked_.start();
  static_cast<void>(
      command({"resume", run_.directory().path(), "--detach"}, "The run goes on"));  // the message has been shown
}

void PPartsRun::stop() {
  asked_.invalidate();
  static_cast<void>(command({"cancel", run_.directory().path()}, "The run stops"));  // the message has been shown
}

void PPartsRun::soFar() {
  if (working_) return;
  working_ = true;
  std::string message;
  std::vector<OutputSoFar> outputs;
  std::int32_t runs = 0;
  bool read = false;
  bool stopped = false;
  {
    const PanelWork work(display(), "Reading model output", window());
    read = readSoFar(run_, outputs, runs, message, work.progress());
    stopped = work.stopped();
  }
  working_ = false;
  if (!read && !stopped)
    return Dialogs::current().message(DialogKind::Error, "Error", QString::fromStdString(message), window());
  if (!read) return;
  const QString some = QString("%1 of %2 runs").arg(runs).arg(run_.record().rows());
  gadget<TableView>("MaSoFar")->setSource(soFarTable(outputs, some));
  gadget<QLabel>("MlSoFar")->setText("Partial: " + some + ", read at " + QTime::currentTime().toString("HH:mm:ss") +
                                     ". This is no result of the study and isn't saved with it.");
  gadget<QTabWidget>("NoPart")->setCurrentIndex(2);
}

void PPartsRun::take() {
  takes_ = false;
  working_ = true;
  const bool taken = controller_.takeParts(run_) == Outcome::Done;  // the messages have been shown
  working_ = false;
  refresh();
  if (!taken) return;
  gadget<QLabel>("MlDriver")->setText("The project has the results.");
  timer_.stop();
  told_.taken();
}

}  // namespace tarvex
