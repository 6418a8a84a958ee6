// The editor of a model of equations: its files, its end, and which gadgets can be used.

#include <QAction>
#include <QComboBox>
#include <QFileInfo>
#include <QLineEdit>
#include <QSpinBox>

#include "base/RememberedDirectories.h"
#include "panels/model/EquationTable.h"
#include "panels/model/ModelEditing.h"
#include "panels/model/PIntModel.h"
#include "panels/model/modelFile.h"
#include "toolkit/Dialogs.h"
#include "toolkit/allow.h"

namespace tarvex {
namespace {

constexpr const char* kEdited = "Warning: model edited";

}  // namespace

bool PIntModel::takeName(QString& problem) {
  const std::string name = gadget<QLineEdit>("TModelName")->text().trimmed().toStdString();
  if (name == model().name()) return true;
  return editing_->change(
      "Name " + QString::fromStdString(name), [&](InternalModel& model) { return model.setName(name); }, problem);
}

void PIntModel::textModified() {
  QString problem;
  if (!takeName(problem)) say("The name of the model: " + problem);
}

// Before the model gives way to another one: false when the user wants to save it and that fails.
bool PIntModel::keepFirst() {
  if (!editing_->edited()) return true;
  return !Dialogs::current().question(kEdited, "The model has been edited.\nDo you want to save changes?", "^Yes",
                                      "^No", window()) ||
         saveFile();
}

void PIntModel::newModel() {
  const bool isEmpty = model().numExpressions() == 0 && model().numVariables() == 0;
  if (!keepFirst()) return;
  if (!editing_->edited() && !isEmpty &&
      !Dialogs::current().question("Warning: existing configuration",
                                   "An internal model is already loaded.\n Do you wish to discard it?", "^Proceed",
                                   "^Cancel", window()))
    return;
  editing_->take("New model", newModelOf(context_.factors));
}

void PIntModel::open() {
  if (!keepFirst()) return;
  const QString path = chooseModelFile(window());
  if (path.isEmpty()) return;
  InternalModel loaded;
  std::string message;
  const bool isLoaded = loadModelFile(path.toStdString(), loaded, message);
  if (!done(isLoaded, QString::fromStdString(message))) return;
  editing_->take("Open " + QFileInfo(path).fileName(), std::move(loaded));
  editing_->setSaved();
  refreshGadgets();
  warn(message);
}

void PIntModel::save() {
  static_cast<void>(saveFile());  // it tells
}

void PIntModel::saveAs() {
  static_cast<void>(saveAsFile());  // it tells
}

bool PIntModel::saveFile() {
  return model().fileName() == InternalModel::kNoFile ? saveAsFile()
                                                      : saveTo(QString::fromStdString(model().fileName()));
}

bool PIntModel::saveAsFile() {
  FileChoice choice = modelFileChoice("Save the internal model");
  choice.purpose = FileChoice::Purpose::Save;
  choice.suffix = "imd";
  const auto chosen = Dialogs::current().chooseFile(choice, window());
  if (!chosen) return false;
  // A directory that is gone by now leaves the old one.
  static_cast<void>(RememberedDirectories::set(RememberedDirectories::Model, chosen->directory.toStdString()));
  return saveTo(chosen->path);
}

bool PIntModel::saveTo(const QString& path) {
  QString problem;
  const bool isNamed = takeName(problem);
  if (!done(isNamed, problem)) return false;
  InternalModel saved = model();
  std::string message;
  const bool isSaved = saveModelFile(path.toStdString(), saved, message);
  if (!done(isSaved, QString::fromStdString(message))) return false;
  editing_->setSaved(std::move(saved));
  say("Saved: " + path);
  return true;
}

// The end.

void PIntModel::ok() {
  QString problem;
  const bool isNamed = takeName(problem);
  if (!done(isNamed, problem)) return;
  if (editing_->edited() &&
      Dialogs::current().question(kEdited, "The model has been edited.\nDo you want to save changes in a file?", "^Yes",
                                  "^No", window()) &&
      !saveFile())
    return;
  end(true);
}

bool PIntModel::leave() {
  return !editing_->edited() ||
         Dialogs::current().question(kEdited, "The model has been edited.\nDo you want to lose changes?", "^Proceed",
                                     "^Cancel", window());
}

void PIntModel::exit() {
  if (leave()) end(false);
}

bool PIntModel::closing() {
  return leave() && Panel::closing();
}

void PIntModel::refreshGadgets() {
  const QString file =
      model().fileName() == InternalModel::kNoFile ? QString() : QString::fromStdString(model().fileName());
  setTitle("Internal Model" + (file.isEmpty() ? QString() : " - " + file) + "[*]");
  window()->setWindowModified(editing_->edited());
  gadget<QLineEdit>("TModelName")->setText(QString::fromStdString(model().name()));
  auto* const variables = gadget<QComboBox>("OInFactors");
  const QString current = variables->currentText();
  variables->clear();
  for (const ModelVariable& variable : model().variables()) variables->addItem(QString::fromStdString(variable.name));
  variables->setCurrentIndex(std::max(variables->findText(current), 0));
  const QString none = table_->rows() > 0 ? QString() : QString("There are no equations yet.");
  const QString noSample = context_.rows > 0 ? QString() : QString("There is no sample yet.");
  const bool isRow = gadget<QComboBox>("OTrial")->currentIndex() == 0;
  const QString undone = editing_->undo().undoName();
  const QString redone = editing_->undo().redoName();
  const std::pair<const char*, QString> rows[] = {
      {"BModify", none},
      {"BDelete", none},
      {"AModify", none},
      {"ADelete", none},
      {"AUp", none},
      {"ADown", none},
      {"OInFactors", variables->count() > 0 ? QString() : QString("The model has no inputs yet.")},
      {"NTrialRow", !noSample.isEmpty() ? noSample
                    : isRow             ? QString()
                                        : QString("The means are chosen.")},
      {"AUndo", undone.isEmpty() ? QString("There is no change to be undone.") : QString()},
      {"ARedo", redone.isEmpty() ? QString("No change was undone.") : QString()}};
  for (const auto& [name, reason] : rows) allow(*gadget<QObject>(name), reason);
  gadget<QAction>("AUndo")->setText("&Undo " + QString(undone).replace('&', "&&"));
  gadget<QAction>("ARedo")->setText("&Redo " + QString(redone).replace('&', "&&"));
}

}  // namespace tarvex
