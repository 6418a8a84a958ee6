// What the panel of factors does with whole lists: files, Stein samples, correlations, truncations; and which gadgets
// can be used.

#include <QAction>
#include <QMenuBar>
#include <QPushButton>

#include "correlation/importStein.h"
#include "factors/FactorFiles.h"
#include "panels/main/PanelWork.h"
#include "panels/prep/FactorEditing.h"
#include "panels/prep/PInputFactors.h"
#include "panels/prep/PTruncation.h"
#include "panels/prep/choosePrepFile.h"
#include "panels/prep/openPanels.h"
#include "toolkit/Dialogs.h"
#include "toolkit/Display.h"
#include "toolkit/allow.h"
#include "toolkit/menuItem.h"

namespace tarvex {
namespace {

constexpr const char* kOpenTitle = "Open the list of factors file:";
constexpr const char* kReadingFactors = "Reading factors";

}  // namespace

bool PInputFactors::giveUpStein() {
  return Dialogs::current().question(
      "Warning", "You are trying to modify the list of factors. This will discard the current Stein configuration",
      "^Yes", "^No", window());
}

void PInputFactors::newFactors() {
  if (list().factorCount() == 0) return;
  if (!Dialogs::current().question({}, "   Really delete ALL factors ?", "^Yes", "^No", window())) return;
  if (list().hasStein() && !giveUpStein()) return;
  editing_->take("New list", FactorList());
}

void PInputFactors::open() {
  if (editing_->modified() &&
      !Dialogs::current().question({}, "   Discard current factors and load from file ?", "^Yes", "^No", window()))
    return;
  if (list().hasStein() && !giveUpStein()) return;
  const auto chosen =
      choosePrepFile(kOpenTitle, FileChoice::Purpose::Open, {{"*.fac", "factors' files"}}, "", window());
  if (!chosen) return;
  FactorList loaded;
  std::string message;
  bool taken = false;
  {
    const PanelWork work(display(), kReadingFactors, window());
    taken = loadFactorFile(chosen->path.toStdString(), loaded, message, work.progress());
    if (work.stopped()) return say("Stopped: the list stays.");
  }
  if (!taken) {
    static_cast<void>(done(false, "Error",
                           "Error opening factors file. Current data may be inconsistent or corrupt. "
                           "Resetting Factors\n" +
                               QString::fromStdString(message)));
    return editing_->take("Failed load", FactorList());
  }
  editing_->take("Load " + chosen->path.section('/', -1), std::move(loaded));
  editing_->setSaved();
  refreshGadgets();
  if (!message.empty())
    Dialogs::current().message(DialogKind::Warning, "Warning", QString::fromStdString(message), window());
}

bool PInputFactors::saveList() {
  const auto chosen = choosePrepFile("Save current list of factors", FileChoice::Purpose::Save,
                                     {{"*.fac", "factor files"}}, "fac", window());
  if (!chosen) return false;
  std::string message;
  bool saved = false;
  {
    const PanelWork work(display(), "Writing factors", window());
    saved = saveFactorFile(chosen->path.toStdString(), list(), message, work.progress());
    if (work.stopped()) {
      say("Stopped: what was saved before stays.");
      return false;
    }
  }
  if (!done(saved, "Write error",
            "  Error writing output file\n " + chosen->path + '\n' + QString::fromStdString(message)))
    return false;
  editing_->setSaved();
  if (!message.empty())
    Dialogs::current().message(DialogKind::Warning, "Warning", QString::fromStdString(message), window());
  refreshGadgets();
  return true;
}

void PInputFactors::save() {
  static_cast<void>(saveList());  // it tells
}

void PInputFactors::impStein() {
  if (list().hasStein() &&
      !Dialogs::current().question({}, "   Discard the old Stein configuration ?", "^Yes", "^No", window()))
    return;
  const auto chosen = choosePrepFile(kOpenTitle, FileChoice::Purpose::Open, {}, "", window());
  if (!chosen) return;
  if (list().factorCount() > 0 &&
      !Dialogs::current().question(
          "Warning: overwrite factors configuration",
          "Do you want to discard the factors stored and load the ones found in the import file?", "^Proceed", "^No",
          window()))
    return;
  FactorList imported;
  std::string message;
  bool taken = false;
  {
    const PanelWork work(display(), "Reading a Stein sample", window());
    taken = importStein(chosen->path.toStdString(), kSteinReplace, imported, message, work.progress());
    if (work.stopped()) return say("Stopped: nothing was imported.");
  }
  if (done(taken, "Error", QString::fromStdString(message)))
    editing_->take("Import " + chosen->path.section('/', -1), std::move(imported));
}

void PInputFactors::correlate() {
  FactorList copy;
  std::string message;
  const bool copied = copy.copyFrom(list(), message);
  if (!done(copied, "Error", QString::fromStdString(message))) return;
  if (correlateFactors(display(), copy, demo_, window())) editing_->take("Correlations", std::move(copy));
}

void PInputFactors::truncation() {
  PTruncation panel(display(), list(), window());
  panel.centre();
  if (!panel.runModal() || !panel.accepted()) return;
  QString problem;
  static_cast<void>(
      done(editing_->setTruncations(panel.places(), panel.left(), panel.right(), problem), "Error", problem));
}

void PInputFactors::refreshGadgets() {
  setTitle(QString(demo_ ? "Input factors selection (Demo mode)" : "Input Factors Selection") + "[*]");
  window()->setWindowModified(editing_->modified());
  const int count = list().factorCount();
  const QString demo = demo_ ? "A demonstration case keeps its factors." : QString();
  const auto either = [](const QString& first, const QString& second) { return first.isEmpty() ? second : first; };
  const QString none = count > 0 ? QString() : QString("There are no factors yet.");
  const QString few = count > 1 ? QString() : QString("A correlation needs two factors.");
  const QString undone = editing_->undo().undoName();
  const QString redone = editing_->undo().redoName();
  const struct {
    const char* gadget;
    const char* item;
    QString reason;
  } rows[] = {
      {"BAdd", nullptr, demo},
      {"BDelete", "ADelete", either(demo, none)},
      {"BModify", "AModify", none},
      {"BVisualize", "AVisualize", none},
      {"BSave", "ASave", none},
      {"BNew", "ANew", demo},
      {"BOpen", "AOpen", demo},
      {"BStein", "AStein", demo},
      {"BCorrelate", "ACorrelate", few},
      {nullptr, "ATruncation", demo},
      {nullptr, "AUp", either(demo, none)},
      {nullptr, "ADown", either(demo, none)},
      {nullptr, "AUndo", undone.isEmpty() ? "There is no change to be undone." : QString()},
      {nullptr, "ARedo", redone.isEmpty() ? "No change was undone." : QString()},
  };
  for (const auto& [button, item, reason] : rows)
    for (const char* const name : {button, item})
      if (name != nullptr) allow(*gadget<QObject>(name), reason);
  if (QAction* const add = menuItem(*gadget<QMenuBar>("MnMenu"), 0, 0)) allow(*add, demo);
  gadget<QAction>("AUndo")->setText("&Undo " + QString(undone).replace('&', "&&"));
  gadget<QAction>("ARedo")->setText("&Redo " + QString(redone).replace('&', "&&"));
  const struct {
    const char* button;
    const char* on;
    const char* off;
  } pictures[] = {{"BSave", "../bitmaps/icsave.gif", "../bitmaps/icsaveInv.gif"},
                  {"BOpen", "../bitmaps/invFolder04.gif", "../bitmaps/invNote11.gif"}};
  for (const auto& [name, on, off] : pictures) {
    auto* const button = gadget<QPushButton>(name);
    button->setIcon(display().icon(button->isEnabled() ? on : off));
  }
}

}  // namespace tarvex
