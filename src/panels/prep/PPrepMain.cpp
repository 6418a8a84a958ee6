#include "panels/prep/PPrepMain.h"

#include <QFrame>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>

#include "factors/FactorFiles.h"
#include "panels/help/PQuickHelp.h"
#include "panels/main/PanelWork.h"
#include "panels/prep/PInputFactors.h"
#include "panels/prep/POutputSelection.h"
#include "panels/prep/PVisInputFactors.h"
#include "panels/prep/choosePrepFile.h"
#include "panels/prep/openPanels.h"
#include "sampling/MethodOffer.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/Sampler.h"
#include "sampling/SamplerFactory.h"
#include "toolkit/Dialogs.h"
#include "toolkit/Display.h"
#include "toolkit/allow.h"

namespace tarvex {
namespace {

// As this panel says it, in fewer capitals than files do.
QString methodText(std::int32_t methodId) {
  QString name = QString::fromLatin1(methodNameOf(methodId).data());
  if (methodId == kLpTau) name = "Quasirandom Lptau";
  return "Currently selected: " + name;
}

}  // namespace

PPrepMain::PPrepMain(const Display& display, PrepSettings settings, const QString& fromFile, bool demo, QWidget* parent)
    : Panel(display, "PPrepMain", "PrepMain",
            demo ? "Prep - Main Panel (Demo mode)" : "Statistical Pre Processor - Main Panel", parent),
      settings_(std::move(settings)),
      fromFile_(fromFile),
      demo_(demo),
      methodChosen_(settings_.sampler != nullptr),
      outputChosen_(!settings_.sampleFile.empty()) {
  quickHelp_ = std::make_unique<PQuickHelp>(display, window());
  gadget<QLineEdit>("TOutputSelection")->setText(QString::fromStdString(settings_.sampleFile));
  fillMethods();
  registerCallbacks({{"modify", [this] { modify(); }},
                     {"inputSelection", [this] { inputSelection(); }},
                     {"cancel", [this] { cancel(); }},
                     {"select", [this] { select(); }},
                     {"visualize", [this] { visualize(); }},
                     {"setting", [this] { setting(); }},
                     {"create", [this] { create(); }},
                     {"outputSelection", [this] { outputSelection(); }},
                     {"ok", [this] { ok(); }},
                     {"specify", [this] { specify(); }}});
  bindKey(QKeySequence(Qt::Key_Escape), [this] { cancel(); });
  refresh();
}

PPrepMain::~PPrepMain() = default;

PrepSettings PPrepMain::takeSettings() {
  return std::move(settings_);
}

void PPrepMain::fail(const QString& title, const QString& text) {
  Dialogs::current().message(DialogKind::Error, title, text, window());
}

// For panels that show the list while nobody changes it.
std::shared_ptr<const FactorList> PPrepMain::shared() const {
  return {std::shared_ptr<const FactorList>(), &settings_.factors};
}

// Factors.

void PPrepMain::create() {
  editFactors(std::make_shared<FactorList>());
}

void PPrepMain::modify() {
  const auto copy = std::make_shared<FactorList>();
  std::string message;
  if (!copy->copyFrom(settings_.factors, message)) return fail("Error", QString::fromStdString(message));
  editFactors(copy);
}

void PPrepMain::editFactors(std::shared_ptr<const FactorList> list) {
  if (busy_) return;
  busy_ = true;
  PInputFactors panel(display(), std::move(list), demo_, window());
  panel.centre();
  const bool accepted = panel.runModal() && panel.accepted();
  busy_ = false;
  if (!accepted || demo_) return;
  FactorList factors;
  std::string message;
  if (!factors.copyFrom(*panel.factors(), message)) return fail("Error", QString::fromStdString(message));
  takeFactors(std::move(factors), {});
}

void PPrepMain::takeFactors(FactorList factors, const QString& fromFile) {
  settings_.factors = std::move(factors);
  fromFile_ = fromFile;
  if (settings_.sampler) settings_.sampler->reset();  // its record is of a sample of the old factors
  methodChosen_ = false;
  gadget<QPushButton>("BSpecify")->setEnabled(false);
  fillMethods();
  refresh();
}

void PPrepMain::inputSelection() {
  if (busy_) return;
  busy_ = true;
  const auto chosen = choosePrepFile("Open list of factors file", FileChoice::Purpose::Open,
                                     {{"*.fac", "factors' files"}}, "", window());
  busy_ = false;
  if (!chosen) return;
  FactorList loaded;
  std::string message;
  bool taken = false;
  {
    const PanelWork work(display(), "Reading factors", window());
    taken = loadFactorFile(chosen->path.toStdString(), loaded, message, work.progress());
    if (work.stopped()) return;
  }
  if (!taken) return fail("Error", "Error reading factors file\n" + QString::fromStdString(message));
  takeFactors(std::move(loaded), chosen->path);
  if (!message.empty())
    Dialogs::current().message(DialogKind::Warning, "Warning", QString::fromStdString(message), window());
}

void PPrepMain::visualize() {
  PVisInputFactors panel(display(), shared(), window());
  panel.centre();
  static_cast<void>(panel.runModal());  // where its file is missing, that has been said
}

// The method.

void PPrepMain::fillMethods() {
  auto* const list = gadget<QListWidget>("SlMethods");
  list->clear();
  QStringList others;
  for (const std::int32_t method : methodsInOrder()) {
    const QString name = QString::fromLatin1(methodNameOf(method).data());
    if (const std::string reason = whyNotOffered(method, settings_.factors); !reason.empty()) {
      others << QString::fromStdString(reason).section(". ", 0, 0);
      continue;
    }
    auto* const item = new QListWidgetItem(name, list);
    item->setData(Qt::UserRole, method);
  }
  others.removeDuplicates();
  gadget<QLabel>("MlMethods")->setText(list->count() == 0 ? QString() : others.join(".\n"));
}

std::int32_t PPrepMain::selectedMethod() {
  const QList<QListWidgetItem*> selected = gadget<QListWidget>("SlMethods")->selectedItems();
  return selected.isEmpty() ? -1 : selected.constFirst()->data(Qt::UserRole).toInt();
}

void PPrepMain::select() {
  const std::int32_t method = selectedMethod();
  allow(*gadget<QPushButton>("BSpecify"), method < 0 ? "Select a method first." : QString());
  quickHelp_->showMethod(method);
}

void PPrepMain::specify() {
  const std::int32_t method = selectedMethod();
  if (busy_ || method < 0) return;
  std::string message;
  std::unique_ptr<Sampler> sampler = settings_.sampler ? settings_.sampler->clone(message) : nullptr;
  if (!message.empty()) return fail("Error", QString::fromStdString(message));
  busy_ = true;
  const bool accepted = specifyMethod(display(), method, settings_.factors, sampler, demo_, window());
  busy_ = false;
  if (!accepted || demo_) return;
  settings_.sampler = std::move(sampler);
  methodChosen_ = true;
  refresh();
  gadget<QLabel>("MlMethodInfo")->setText("Currently selected: " + QString::fromLatin1(methodNameOf(method).data()));
}

// The file.

void PPrepMain::outputSelection() {
  if (busy_) return;
  while (true) {
    busy_ = true;
    const auto chosen = choosePrepFile("Output file for sample", FileChoice::Purpose::Save, {{"*.sam", "sample files"}},
                                       "sam", window());
    busy_ = false;
    if (!chosen) return;
    const std::string path = chosen->path.toStdString();
    const std::string problem = PrepConfiguration::kSampleFileRule.problem(path);
    if (problem.empty()) {
      settings_.sampleFile = path;
      break;
    }
    fail("Error", QString::fromStdString(problem));
  }
  outputChosen_ = true;
  gadget<QLineEdit>("TOutputSelection")->setText(QString::fromStdString(settings_.sampleFile));
  refresh();
}

void PPrepMain::setting() {
  POutputSelection panel(display(), shared(), settings_.order, window());
  panel.centre();
  if (panel.runModal() && panel.accepted()) settings_.order = panel.order();
}

// The end.

void PPrepMain::ok() {
  quickHelp_->hide();
  end(true);
}

// Lists that were opened meanwhile may have brought default truncations of their own.
void PPrepMain::cancel() {
  defaults_.restore();
  quickHelp_->hide();
  end(false);
}

bool PPrepMain::closing() {
  cancel();
  return true;
}

void PPrepMain::refresh() {
  // A file's list is one whatever it holds; that of a panel has to hold something that is sampled.
  const bool some = settings_.factors.correlatableCount() > 0 || !fromFile_.isEmpty();
  const bool fromPanel = fromFile_.isEmpty();
  gadget<QLabel>("MlSourceInfo")
      ->setText(!some       ? "No factors"
                : fromPanel ? "Using factors from panel"
                            : "Using factors from file");
  gadget<QLineEdit>("TInputSelection")->setText(some ? fromFile_ : QString());
  const QString none = some ? QString() : QString("There is no factor that is sampled.");
  const QString demo = demo_ ? "A demonstration case keeps its configuration." : QString();
  for (const char* const name : {"BModify", "BVisualize", "FMethods", "SlMethods"}) allow(*gadget<QWidget>(name), none);
  for (const char* const name : {"BCreate", "BSetting", "BInputSelection", "BOutputSelection"})
    allow(*gadget<QPushButton>(name), demo);
  for (const char* const name : {"BInputSelection", "BOutputSelection"})
    gadget<QPushButton>(name)->setIcon(display().icon(demo_ ? "../bitmaps/oleaggInv.gif" : "../bitmaps/oleagg.gif"));
  gadget<QLabel>("MlMethodInfo")
      ->setText(methodChosen_ ? methodText(settings_.sampler->methodId) : QString("No Method"));
  allow(*gadget<QPushButton>("BSpecify"), selectedMethod() < 0 ? "Select a method first." : QString());
  const QString missing = settings_.factors.correlatableCount() == 0 ? "Make a list of factors or open one."
                          : !methodChosen_                           ? "Select a method and specify it."
                          : !outputChosen_                           ? "Choose the file that the sample is written to."
                                                                     : "";
  allow(*gadget<QPushButton>("BOk"), missing);
  gadget<QLabel>("MlMessage")->setText(missing);
}

}  // namespace tarvex
