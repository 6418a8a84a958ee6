#include "panels/parts/PPartsRun.h"

#include <QFile>
#include <QFontDatabase>
#include <QKeySequence>
#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QTabWidget>
#include <algorithm>

#include "app/RunController.h"
#include "parts/PartsText.h"
#include "toolkit/SquareField.h"
#include "toolkit/TableView.h"
#include "toolkit/allow.h"

namespace tarvex {
namespace {

constexpr int kLookPace = 500;         // ms between two looks at the run
constexpr int kStarting = 10'000;      // ms that a program may take until it drives the run
constexpr qint64 kMostText = 1 << 16;  // bytes that are shown of a file

// As the field shows them: the stages of a part in their order. Colours that the colour-blind can tell apart
// (M. Okabe, K. Ito, Color Universal Design, 2008).
std::vector<SquareField::State> partColours() {
  using Sign = SquareField::Sign;
  return {{"waiting", {}, Sign::None},
          {"sent", QColor(0x56, 0xB4, 0xE9), Sign::Ring},
          {"running", QColor(0x00, 0x72, 0xB2), Sign::Dot},
          {"done", QColor(0x00, 0x9E, 0x73), Sign::None},
          {"failed", QColor(0xD5, 0x5E, 0x00), Sign::Cross},
          {"missing", QColor(0xCC, 0x79, 0xA7), Sign::Slash}};
}

// The end of a file, from a whole line on; empty without one.
QString endOf(const std::string& path) {
  QFile file(QString::fromStdString(path));
  if (!file.open(QIODevice::ReadOnly)) return {};
  const bool isCut = file.size() > kMostText;
  if (isCut && !file.seek(file.size() - kMostText)) return {};
  const QString text = QString::fromUtf8(file.read(kMostText));
  return isCut ? "...\n" + text.section('\n', 1) : text;
}

QString beginningOf(const std::string& path) {
  QFile file(QString::fromStdString(path));
  if (!file.open(QIODevice::ReadOnly)) return {};
  const QString text = QString::fromUtf8(file.read(kMostText));
  return file.size() > kMostText ? text.section('\n', 0, -2) + "\n..." : text;
}

}  // namespace

PPartsRun::PPartsRun(const Display& display, RunController& controller, const std::string& directory, Told told,
                     QWidget* parent)
    : Panel(display, "PPartsRun", "PPartsRun", "Run in parts: " + QString::fromStdString(directory), parent),
      controller_(controller),
      run_(directory),
      told_(std::move(told)) {
  gadget<SquareField>("FdParts")->setStates(partColours(), [this](int part) { return partText(part); });
  for (const char* const name : {"TePrinted", "TeRows"})
    gadget<QPlainTextEdit>(name)->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  gadget<TableView>("MaSoFar")->setEmptyText("What the parts that are done gave is read when you ask for it.");
  registerCallbacks({{"selectPart", [this] { selectPart(); }},
                     {"showPage", [this] { showPage(); }},
                     {"retry", [this] { retry(); }},
                     {"retryAll", [this] { retryAll(); }},
                     {"goOn", [this] { goOn(); }},
                     {"stop", [this] { stop(); }},
                     {"soFar", [this] { soFar(); }},
                     {"take", [this] { take(); }},
                     {"detach", [this] { detach(); }}});
  bindKey(QKeySequence(Qt::Key_Escape), [this] { detach(); });
  connect(&timer_, &QTimer::timeout, this, [this] { look(); });
  timer_.start(kLookPace);
  look();
}

bool PPartsRun::isDriven() const {
  const bool starts = asked_.isValid() && !asked_.hasExpired(kStarting);
  return problem_.empty() && (!run_.holder().empty() || starts);
}

std::string PPartsRun::whyHeld() const {
  if (!isVisible() || run_.holder().empty()) return {};
  return "A run in parts works on this sample: stop it, or leave it to itself, first.";
}

void PPartsRun::look() {
  if (working_) return;
  std::string problem;
  const std::uint64_t before = run_.bytesRead();
  const bool seen = run_.look(problem);
  problem_ = seen ? std::string() : problem;
  if (!run_.holder().empty() || run_.bytesRead() != before) asked_.invalidate();
  if (run_.bytesRead() != before || shown_ == 0) {
    shown_ = run_.bytesRead();
    std::vector<std::uint8_t> squares(run_.states().size());
    const bool isLocal = run_.record().settings.engine == EngineKind::Local;
    for (std::size_t part = 0; part < squares.size(); ++part) {
      const PartState::Stage stage = run_.states()[part].stage;
      squares[part] = static_cast<std::uint8_t>(isLocal && stage == PartState::Sent ? PartState::Begun : stage);
    }
    gadget<SquareField>("FdParts")->setSquares(std::move(squares));
  }
  showState();
  showPart();
  refresh();
  if (const bool holds = !whyHeld().empty(); holds != held_) {
    held_ = holds;
    told_.changed();
  }
  const bool isOver = problem_.empty() && run_.states().isOver() && !isDriven();
  if (takes_ && isOver && !controller_.busy() && controller_.isAbout(run_.record())) take();
}

void PPartsRun::showState() {
  const PartStates& states = run_.states();
  const int rows = run_.record().rows();
  auto* const bar = gadget<QProgressBar>("RgDone");
  bar->setRange(0, std::max(rows, 1));
  bar->setValue(states.rowsIn(PartState::Done));
  if (!problem_.empty()) {
    gadget<QLabel>("MlState")->setText("The run can't be looked at.");
    gadget<QLabel>("MlPace")->clear();
    gadget<QLabel>("MlDriver")->setText(QString::fromStdString(problem_));
    return;
  }
  gadget<QLabel>("MlState")->setText(QString::fromStdString(partsText(states)));
  gadget<QLabel>("MlPace")->setText(run_.holder().empty() ? QString() : QString::fromStdString(run_.pace()));
  const bool starts = isDriven() && run_.holder().empty();
  QString driver =
      starts ? QString("The program that drives the run starts.") : QString::fromStdString(driverText(run_));
  if (!isDriven() && states.ending() != "done")
    driver += '\n' + endOf(run_.directory().path() + "/coordinator.log").trimmed().section('\n', -2);
  gadget<QLabel>("MlDriver")->setText(driver.trimmed());
}

QString PPartsRun::partText(int part) const {
  const auto number = static_cast<std::size_t>(part);
  if (part < 0 || number >= run_.states().size()) return {};
  const PartState& state = run_.states()[number];
  if (state.stage == PartState::Failed || state.stage == PartState::Missing)
    return QString::fromStdString(failureText(run_.states(), number)) +
           (state.stage == PartState::Missing ? "; its runs count as missing" : "");
  QString text = QString::fromStdString(tarvex::partText(number, run_.states().parts()[number]));
  static const char* const kWords[] = {"waits", "was sent", "runs", "is done", "", ""};
  const bool runs = state.stage == PartState::Sent && run_.record().settings.engine == EngineKind::Local;
  text += ' ' + QString(kWords[runs ? PartState::Begun : state.stage]);
  if (!state.host.empty() && state.stage != PartState::Open) text += " on " + QString::fromStdString(state.host);
  if (state.attempt > 1) text += QString(", attempt %1").arg(state.attempt);
  return text;
}

void PPartsRun::selectPart() {
  showPart();
  refresh();
}

void PPartsRun::showPage() {
  showPart();
}

// A text that is as it was keeps the place that is read.
void PPartsRun::showPart() {
  const int part = gadget<SquareField>("FdParts")->selected();
  gadget<QLabel>("MlPart")->setText(part < 0 ? QString("Choose a part to see its log and its rows.") : partText(part));
  const auto fill = [this](const char* name, const QString& text, const QString& none) {
    auto* const field = gadget<QPlainTextEdit>(name);
    field->setPlaceholderText(none);
    if (field->toPlainText() != text) field->setPlainText(text);
  };
  QString log;
  QString rows;
  if (part >= 0 && static_cast<std::size_t>(part) < run_.states().size()) {
    const PartState& state = run_.states()[static_cast<std::size_t>(part)];
    const std::string directory = run_.directory().attempt(part, std::max(state.attempt, 1));
    log = endOf(directory + "/log") + endOf(directory + "/scheduler.log");
    if (gadget<QTabWidget>("NoPart")->currentIndex() == 1) rows = beginningOf(directory + "/sample.sam");
  }
  fill("TePrinted", log, part < 0 ? "No part is chosen." : "It has printed nothing.");
  fill("TeRows", rows, part < 0 ? "No part is chosen." : "The part hasn't been sent yet.");
}

// What can be asked of the run now, and why not.
void PPartsRun::refresh() {
  const QString gone = problem_.empty() ? QString() : QString("The run can't be looked at.");
  const auto first = [](std::initializer_list<QString> reasons) {
    for (const QString& reason : reasons)
      if (!reason.isEmpty()) return reason;
    return QString();
  };
  const auto unless = [](bool holds, const char* reason) { return holds ? QString() : QString(reason); };
  const PartStates& states = run_.states();
  const int part = gadget<SquareField>("FdParts")->selected();
  const bool isPart = part >= 0 && static_cast<std::size_t>(part) < states.size();
  const PartState::Stage stage = isPart ? states[static_cast<std::size_t>(part)].stage : PartState::Open;
  const bool failed = stage == PartState::Failed || stage == PartState::Missing;
  const bool someFailed = states.count(PartState::Failed) + states.count(PartState::Missing) > 0;
  const bool driven = isDriven();
  const std::pair<const char*, QString> rows[] = {
      {"BRetry", first({gone, unless(failed, "Choose a part that failed.")})},
      {"BRetryAll", first({gone, unless(someFailed, "No part has failed.")})},
      {"BGoOn", first({gone, unless(!driven, "The run goes on."),
                       unless(!states.isOver() || someFailed, "All parts are done.")})},
      {"BStop", first({gone, unless(driven, "Nothing runs.")})},
      {"BSoFar", first({gone, unless(states.count(PartState::Done) > 0, "No part is done yet.")})},
      {"BTake",
       first({gone, unless(states.isOver(), "The run isn't over."), unless(!driven, "The run isn't over."),
              unless(!controller_.busy(), "Stop what is in progress first."),
              unless(controller_.isAbout(run_.record()), "The project has another sample or another model.")})},
  };
  for (const auto& [name, reason] : rows) allow(*gadget<QWidget>(name), reason);
}

// The run goes on; the panel finds it again.
void PPartsRun::detach() {
  if (working_) return;
  timer_.stop();
  hide();
  held_ = false;
  told_.changed();
}

bool PPartsRun::closing() {
  if (working_) return false;
  detach();
  return true;
}

}  // namespace tarvex
