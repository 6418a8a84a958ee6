// What the gadgets of the main panel show, and which of them can be used.

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>

#include "app/RunController.h"
#include "panels/main/PMainPanel.h"
#include "toolkit/Display.h"
#include "toolkit/allow.h"

namespace tarvex {
namespace {

// "1 run", "8192 runs".
QString counted(std::size_t count, const char* what) {
  return QString::number(count) + ' ' + what + (count == 1 ? "" : "s");
}

// The first of these reasons that there is.
QString firstOf(std::initializer_list<QString> reasons) {
  for (const QString& reason : reasons)
    if (!reason.isEmpty()) return reason;
  return {};
}

}  // namespace

QString PMainPanel::why(Step step) const {
  return QString::fromStdString(controller_->whyNot(step)).trimmed();
}

void PMainPanel::allow(const char* gadgetName, const QString& reason) {
  tarvex::allow(*gadget<QObject>(gadgetName), reason);
}

void PMainPanel::refresh() {
  if (endStatus_ >= 0 && !controller_->busy()) guard_->leave(true);
  const bool stage = controller_->monteCarloMode();
  refreshGadgets();
  for (const char* const name : {"BGenerate", "BVisualize"}) gadget<QPushButton>(name)->setVisible(!stage);
  for (const char* const name : {"IcArrow1", "IcArrow2"}) gadget<QLabel>(name)->setVisible(stage);
  gadget<QPushButton>("BAbortMonteCarlo")->setText(controller_->demoMode() ? "Exit demo mode" : "A&bort");
  for (const char* const name : {"BVelsFile", "BOld", "BImport"}) {
    auto* const button = gadget<QPushButton>(name);
    button->setIcon(display().icon(button->isEnabled() ? "../bitmaps/oleagg.gif" : "../bitmaps/oleaggInv.gif"));
  }
  refreshUndo();
  refreshStages();
  refreshTitle();
}

// Every row: the gadget, the menu item that does the same, and what stands against its use.
void PMainPanel::refreshGadgets() {
  const auto unless = [](bool holds, const char* reason) { return holds ? QString() : QString(reason); };
  const bool stage = controller_->monteCarloMode();
  const bool demo = controller_->demoMode();
  const auto from = [&](Source wanted) {
    return unless(source() == wanted, "Another source of the sample is chosen.");
  };
  const QString atWork = why(Step::LoadFile);
  const QString old = firstOf({from(kSavedFile), atWork});
  const QString external = firstOf({from(kExternalFile), atWork});
  const QString results = firstOf({unless(!stage, "Leave the Monte Carlo analysis first."), atWork});
  const QString generate =
      firstOf({from(kNewConfiguration), why(Step::Generate), unless(configured_, "Configure the sample first.")});
  const struct {
    const char* gadget;
    const char* item;
    QString reason;
  } rows[] = {
      {"BMonteCarlo", nullptr, why(Step::EnterMonteCarlo)},
      {"BAbortMonteCarlo", nullptr, why(Step::LeaveMonteCarlo)},
      {"SelSamplesSource", nullptr, firstOf({unless(!demo, "A demonstration case keeps its sample."), atWork})},
      {"BConfigure", "AConfigure", firstOf({from(kNewConfiguration), why(Step::ConfigurePrep)})},
      {"BGenerate", "AGenerate", generate},
      {"BOld", nullptr, old},
      {"TOldGeneration", nullptr, old},
      {"BImport", nullptr, external},
      {"TImportFile", nullptr, external},
      {"BVisualize", nullptr, why(Step::Visualize)},
      {"BSelectInput", "ASelectInput", why(Step::SelectModel)},
      {"TeExternalConf", nullptr, unless(stage, "Enter the Monte Carlo analysis first.")},
      {"BStart", "AStart", why(Step::Run)},
      {"BSeeLog", nullptr, unless(logOffered_, "Nothing has been run yet.")},
      {"BAnalyse", "AAnalyse", why(Step::Analyse)},
      {"BVelsFile", "AVelsFile", results},
      {"TVelsFile", nullptr, results},
      {nullptr, "ARunParts",
       QString::fromStdString(controller_->whyHeld().empty() ? controller_->whyNotInParts() : std::string()).trimmed()},
      {nullptr, "ALoad", atWork},
      {nullptr, "ASaveAs", why(Step::SaveProject)},
      {nullptr, "AQuickSave", why(Step::QuickSave)},
      {nullptr, "AReset", why(Step::Reset)},
      {nullptr, "ALeaveDemo", firstOf({unless(demo, "No demonstration case is open."), atWork})},
  };
  for (const auto& [gadget, item, reason] : rows)
    for (const char* const name : {gadget, item})
      if (name != nullptr) allow(name, reason);
  for (const char* const name : {"AIshigami", "ALevelE", "ALinear", "ASobol0", "ASobol1", "ASobol2", "ASobol3"})
    allow(name, atWork);
}

void PMainPanel::refreshUndo() {
  const struct {
    const char* item;
    QString word;
    QString name;
    QString none;
  } rows[] = {{"AUndo", "&Undo", changes_.undoName(), "There is no change to be undone."},
              {"ARedo", "&Redo", changes_.redoName(), "No change was undone."}};
  for (const auto& [item, word, name, none] : rows) {
    gadget<QAction>(item)->setText(name.isEmpty() ? word : word + ' ' + QString(name).replace('&', "&&"));
    allow(item, firstOf({name.isEmpty() ? none : QString(), why(Step::LoadFile)}));
  }
}

void PMainPanel::refreshTitle() {
  setTitle(title_ + "[*]");
  window()->setWindowModified(controller_->modified());
}

void PMainPanel::showStage(const char* stage, const QString& word, const QString& bitmap, const QString& reason) {
  const QByteArray name(stage);
  gadget<QLabel>(("Ml" + name + "State").constData())->setText(word);
  gadget<QLabel>(("Ml" + name + "Reason").constData())->setText(reason);
  gadget<QLabel>(("Ic" + name + "State").constData())->setPixmap(display().icon(bitmap).pixmap(16, 16));
}

void PMainPanel::refreshStages() {
  static constexpr const char* kDone = "../bitmaps/done.svg";
  static constexpr const char* kReady = "../bitmaps/ready.svg";
  static constexpr const char* kStale = "../bitmaps/stale.svg";
  static constexpr const char* kWaiting = "../bitmaps/waiting.svg";
  const ProjectConfiguration& project = controller_->project();
  const auto show = [&](const char* stage, Step step, bool done, bool stale, const QString& doneText) {
    const QString against = why(step);
    if (stale)
      showStage(stage, "stale", kStale, "The settings changed after this was made.");
    else if (done)
      showStage(stage, "done", kDone, doneText);
    else if (against.isEmpty())
      showStage(stage, "ready", kReady, {});
    else
      showStage(stage, "waiting", kWaiting, against);
  };
  const int rows = project.prep.samples.rows();
  const bool sample = project.hasPrep && rows > 0;
  const bool results = why(Step::Analyse).isEmpty();
  show("Sample", Step::Generate, sample, sample && controller_->sampleStale(),
       counted(static_cast<std::size_t>(rows), "run") + " of " +
           counted(static_cast<std::size_t>(project.prep.factors.factorCount()), "factor"));
  show("Model", Step::Run, results, false, counted(project.vels.outputs().size(), "output") + " computed");
  show("Results", Step::Analyse, results && !project.vels.selectedVariables().empty(), false,
       counted(project.vels.selectedVariables().size(), "variable") + " analysed");
}

}  // namespace tarvex
