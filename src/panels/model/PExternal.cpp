#include "panels/model/PExternal.h"

#include <unistd.h>

#include <QCheckBox>
#include <QComboBox>
#include <QFileInfo>
#include <QHeaderView>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <utility>

#include "base/Paths.h"
#include "base/RememberedDirectories.h"
#include "model/ModelChoice.h"
#include "model/ModelCommand.h"
#include "panels/help/PHelp.h"
#include "panels/model/PIntModel.h"
#include "panels/model/PTryRun.h"
#include "panels/model/modelFile.h"
#include "toolkit/Dialogs.h"
#include "toolkit/Display.h"
#include "toolkit/TableView.h"
#include "toolkit/allow.h"

namespace tarvex {
namespace {

constexpr const char* kLoaded = "Internal Model loaded";

}  // namespace

QString outputFormatText() {
  return "<number of variables>\n"
         "for each variable {\n"
         "    <variable name>\n"
         "   }\n"
         "<\"time =\" \"yes\"|\"no\">\n"
         "<number of runs>\n"
         "for each run {\n"
         "    <\"RUN\" number>\n"
         "    if time == \"yes\" {\n"
         "       <number of times>\n"
         "       for each time {\n"
         "           <\"t =\" value>\n"
         "           for each variable <value>\n"
         "          }\n"
         "      }\n"
         "    else {\n"
         "      for each variable <value>\n"
         "     }\n"
         "   }";
}

PExternal::PExternal(const Display& display, const ModelChoice& choice, ModelContext context, QWidget* parent)
    : Panel(display, "PExternal", "External", "Model Selection", parent),
      choice_(choice),
      context_(std::move(context)) {
  showChoice();
  registerCallbacks({{"NewIntModel", [this] { newIntModel(); }},
                     {"switchModel", [this] { switchModel(); }},
                     {"switchExcel", [this] { switchExcel(); }},
                     {"modelSelect", [this] { modelSelect(); }},
                     {"modIntModel", [this] { modIntModel(); }},
                     {"switchExternalExe", [this] { switchExternalExe(); }},
                     {"ok", [this] { ok(); }},
                     {"loadIntModel", [this] { loadIntModel(); }},
                     {"cancel", [this] { end(false); }},
                     {"outputSelect", [this] { outputSelect(); }},
                     {"changeIntModelFile", [this] { changeIntModelFile(); }},
                     {"loadTyped", [this] { loadTyped(); }},
                     {"edited", [this] { judge(); }},
                     {"tryRun", [this] { tryRun(); }},
                     {"formatHelp", [this] { formatHelp(); }}});
  bindKey(QKeySequence(Qt::Key_Escape), [this] { end(false); });
  refresh();
  gadget<QWidget>(isInternal() ? "BCreateNewIntModel" : "CModel")->setFocus();
}

void PExternal::showChoice() {
  const bool isNew = choice_.executable.empty() && choice_.outputFile.empty();
  gadget<QComboBox>("SeSwitchModel")->addItems({"External: a program or a workbook", "Internal: equations"});
  gadget<QComboBox>("SeSwitchModel")->setCurrentIndex(choice_.kind == kInternalModel ? kInternal : kExternal);
  gadget<QCheckBox>("TModelExe")->setChecked(isNew || choice_.kind != kNoModelToStart);
  gadget<QCheckBox>("TExcel")->setChecked(choice_.spreadsheet != 0);
  gadget<QLineEdit>("CModel")->setText(QString::fromStdString(choice_.executable));
  gadget<QLineEdit>("TOutput")->setText(QString::fromStdString(choice_.outputFile));
  auto* const cells = gadget<TableView>("MaCells");
  cells_->take(context_.factors, choice_.cells);
  cells->setEditable(cells_);
  cells->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  cells->verticalHeader()->hide();
  connect(cells, &TableView::edited, this, [this] { cellsEdited(); });
  connect(cells, &TableView::refused, this, [this](const QString& why) { gadget<QLabel>("MlMessage")->setText(why); });
  if (const InternalModel* const model = choice_.internalModel())
    gadget<QLineEdit>("TIntModelFile")
        ->setText(model->fileName() == InternalModel::kNoFile ? kLoaded : QString::fromStdString(model->fileName()));
}

bool PExternal::isInternal() {
  return gadget<QComboBox>("SeSwitchModel")->currentIndex() == kInternal;
}

QString PExternal::helpTopic() const {
  const auto* const chosen = window()->findChild<QComboBox*>("SeSwitchModel");
  return chosen != nullptr && chosen->currentIndex() == kInternal ? "PExternal#internal" : "PExternal";
}

void PExternal::switchModel() {
  refresh();
}

void PExternal::switchExternalExe() {
  refresh();
}

void PExternal::switchExcel() {
  gadget<QLineEdit>("CModel")->setText(gadget<QCheckBox>("TExcel")->isChecked() ? kSpreadsheetProgram : "");
  refresh();
}

void PExternal::choose(const char* title, int directory, const char* field) {
  const auto kind = static_cast<RememberedDirectories::Kind>(directory);
  const auto chosen = Dialogs::current().chooseFile(
      {title, {{"*.*", "all files"}}, QString::fromStdString(RememberedDirectories::get(kind))}, window());
  if (!chosen) return;
  // A directory that is gone by now leaves the old one.
  static_cast<void>(RememberedDirectories::set(kind, chosen->directory.toStdString()));
  gadget<QLineEdit>(field)->setText(chosen->path);
  judge();
}

void PExternal::modelSelect() {
  choose("Select model to execute", RememberedDirectories::Model, "CModel");
}

void PExternal::outputSelect() {
  choose("Select output model file", RememberedDirectories::ModelOutput, "TOutput");
}

// Equations.

void PExternal::takeModel(InternalModel model, const QString& shown) {
  choice_.setInternalModel(std::make_unique<InternalModel>(std::move(model)));
  gadget<QLineEdit>("TIntModelFile")->setText(shown);
  typed_ = false;
  refresh();
}

bool PExternal::load(const QString& path) {
  InternalModel model;
  std::string message;
  if (!loadModelFile(path.toStdString(), model, message)) {
    Dialogs::current().message(DialogKind::Error, "Error opening file", QString::fromStdString(message), window());
    return false;
  }
  takeModel(std::move(model), path);
  if (!message.empty())
    Dialogs::current().message(DialogKind::Warning, "Warning", QString::fromStdString(message), window());
  return true;
}

void PExternal::loadIntModel() {
  const QString path = chooseModelFile(window(), true);
  if (!path.isEmpty()) static_cast<void>(load(path));  // it tells
}

void PExternal::loadTyped() {
  if (typed_) static_cast<void>(load(gadget<QLineEdit>("TIntModelFile")->text().trimmed()));  // it tells
}

void PExternal::changeIntModelFile() {
  typed_ = true;
  refresh();
}

bool PExternal::edit(const InternalModel& model) {
  PIntModel editor(display(), model, context_, window());
  editor.centre();
  if (!editor.runModal() || !editor.accepted()) return false;
  const std::string& file = editor.model().fileName();
  takeModel(editor.model(), file == InternalModel::kNoFile ? kLoaded : QString::fromStdString(file));
  return true;
}

void PExternal::newIntModel() {
  if (choice_.internalModel() != nullptr &&
      !Dialogs::current().question("Warning: existing configuration",
                                   "An internal model is already loaded.\n Do you wish to discard it?", "^Proceed",
                                   "^Cancel", window()))
    return;
  static_cast<void>(edit(newModelOf(context_.factors)));  // cancelled: the old one stays
}

void PExternal::modIntModel() {
  if (choice_.internalModel() != nullptr) static_cast<void>(edit(InternalModel(*choice_.internalModel())));  // or stays
}

// The end.

ModelRequest PExternal::request() {
  ModelRequest asked;
  asked.internal = isInternal();
  asked.execute = gadget<QCheckBox>("TModelExe")->isChecked();
  asked.spreadsheet = gadget<QCheckBox>("TExcel")->isChecked();
  asked.executable = gadget<QLineEdit>("CModel")->text().toStdString();
  asked.outputFile = gadget<QLineEdit>("TOutput")->text().toStdString();
  return asked;
}

void PExternal::ok() {
  if (isInternal() && typed_ && !load(gadget<QLineEdit>("TIntModelFile")->text().trimmed())) return;
  if (accept(choice_)) end(true);
}

// With the model as the panel has it, which is accepted for that alone.
void PExternal::tryRun() {
  if (isInternal() && typed_ && !load(gadget<QLineEdit>("TIntModelFile")->text().trimmed())) return;
  ModelChoice draft = choice_;
  if (!accept(draft)) return;
  PTryRun trial(display(), draft, context_, window());
  trial.centre();
  static_cast<void>(trial.runModal());  // where its file is missing, that has been said
}

// Makes `choice` what the panel shows, or says why not.
std::optional<ModelRefusal> PExternal::take(ModelChoice& choice) {
  ModelRequest asked = request();
  std::string problem;
  if (!asked.internal && asked.execute && asked.spreadsheet && !cells_->read(asked.cells, problem))
    return ModelRefusal{"Error: Cells of the workbook", problem};
  return acceptModelRequest(asked, choice);
}

void PExternal::cellsEdited() {
  if (cells_->tidy()) gadget<TableView>("MaCells")->tableModel().sourceChanged();
  judge();
}

bool PExternal::accept(ModelChoice& choice) {
  const std::optional<ModelRefusal> refusal = take(choice);
  if (refusal)
    Dialogs::current().message(DialogKind::Error, QString::fromStdString(refusal->title),
                               QString::fromStdString(refusal->text), window());
  return !refusal;
}

void PExternal::formatHelp() {
  const auto help = PHelp::ofLines(display(), "File Format", "Format for the model output file", outputFormatText(),
                                   "PExternal#output", window());
  help->centre();
  static_cast<void>(help->runModal());  // where its file is missing, that has been said
}

// What the gadgets show.

void PExternal::refresh() {
  const QString internal = isInternal() ? QString("Equations are chosen.") : QString();
  const QString external = isInternal() ? QString() : QString("A program or a workbook is chosen.");
  const bool execute = gadget<QCheckBox>("TModelExe")->isChecked();
  const bool workbook = gadget<QCheckBox>("TExcel")->isChecked();
  const auto first = [](const QString& one, const QString& other) { return one.isEmpty() ? other : one; };
  const QString notRun = first(internal, execute ? QString() : QString("Only its output file is read."));
  const QString noChoice = first(notRun, workbook ? QString("A workbook is opened by its application.") : QString());
  const QString noCells = first(notRun, workbook ? QString() : QString("Only a workbook has cells."));
  const QString noModel = choice_.internalModel() == nullptr ? QString("There are no equations yet.")
                          : typed_                           ? QString("The file that was typed isn't loaded yet.")
                                                             : QString();
  const std::pair<const char*, QString> rows[] = {{"FExtModel", internal},
                                                  {"TModelExe", internal},
                                                  {"TExcel", internal},
                                                  {"CModel", notRun},
                                                  {"TModelName", notRun},
                                                  {"BModel", noChoice},
                                                  {"TOutput", internal},
                                                  {"BOutputFile", internal},
                                                  {"MaCells", noCells},
                                                  {"FIntModel", external},
                                                  {"TIntModelFile", external},
                                                  {"BInternalModel", external},
                                                  {"BCreateNewIntModel", external},
                                                  {"BModifyInternalModel", first(external, noModel)}};
  for (const auto& [name, reason] : rows) allow(*gadget<QWidget>(name), reason);
  allow(*gadget<QWidget>("BTry"), !context_.tryModel         ? QString("There is no study to try it with.")
                                  : context_.factors.empty() ? QString("There are no factors yet.")
                                                             : QString());
  gadget<QLineEdit>("CModel")->setReadOnly(workbook);
  gadget<QLabel>("TOutFile")->setText(workbook ? "W&orkbook" : "O&utput file");
  gadget<QPushButton>("BModel")->setIcon(
      display().icon(noChoice.isEmpty() ? "../bitmaps/oleagg.gif" : "../bitmaps/oleaggInv.gif"));
  judge();
}

// What ok would say, while the fields are filled in.
void PExternal::judge() {
  ModelChoice draft = choice_;
  const ModelRequest asked = request();
  QString text;
  if (const std::optional<ModelRefusal> refusal = take(draft))
    text = QString::fromStdString(refusal->text).trimmed();
  else if (!asked.internal && asked.execute && !asked.spreadsheet &&
           ::access(existingPath(programOf(asked.executable)).c_str(), X_OK) != 0)
    text = QString::fromStdString(asked.executable) + " isn't marked as a program that can be run.";
  gadget<QLabel>("MlMessage")->setText(text);
}

}  // namespace tarvex
