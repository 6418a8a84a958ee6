#pragma once

#include <memory>
#include <optional>

#include "model/ModelChoice.h"
#include "model/ModelRequest.h"
#include "panels/model/CellsTable.h"
#include "panels/model/ModelContext.h"
#include "toolkit/Panel.h"

namespace tarvex {

// Which model is run: a program or a workbook with the file that it writes, or equations. Works on a copy of the
// choice.
class PExternal : public Panel {
 public:
  PExternal(const Display& display, const ModelChoice& choice, ModelContext context, QWidget* parent);

  // Of use once the panel was accepted.
  const ModelChoice& choice() const { return choice_; }

  QString helpTopic() const override;

 private:
  // The model, in the order of the selector.
  enum Model { kExternal = 0, kInternal = 1 };

  void switchModel();
  void switchExternalExe();
  void switchExcel();
  void modelSelect();
  void outputSelect();
  void loadIntModel();
  void newIntModel();
  void modIntModel();
  void changeIntModelFile();
  void loadTyped();
  void tryRun();
  bool accept(ModelChoice& choice);
  void formatHelp();
  void ok();

  bool isInternal();
  ModelRequest request();
  bool edit(const InternalModel& model);
  bool load(const QString& path);
  void takeModel(InternalModel model, const QString& shown);
  void choose(const char* title, int directory, const char* field);
  void showChoice();
  void refresh();
  void judge();
  void cellsEdited();
  std::optional<ModelRefusal> take(ModelChoice& choice);

  ModelChoice choice_;
  std::shared_ptr<CellsTable> cells_ = std::make_shared<CellsTable>();
  ModelContext context_;
  bool typed_ = false;  // another file of equations was typed, and isn't loaded
};

// What the "Format for the model output file" is, line by line.
QString outputFormatText();

}  // namespace tarvex
