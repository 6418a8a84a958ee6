#pragma once

#include <memory>
#include <vector>

#include "model/InternalModel.h"
#include "panels/model/ModelContext.h"
#include "toolkit/Panel.h"

namespace tarvex {

class EquationTable;
class ModelEditing;

// The editor of a model of equations: its inputs, and the equations in order, each with its value in one run. The model
// given stays as it is.
class PIntModel : public Panel {
 public:
  PIntModel(const Display& display, const InternalModel& model, ModelContext context, QWidget* parent);
  ~PIntModel() override;

  // The model as it is now. Of use once the panel was accepted.
  const InternalModel& model() const;

 protected:
  bool closing() override;

 private:
  void addExpression();
  void modifyExpression();
  void deleteExpression();
  void modifyFactors();
  void newModel();
  void open();
  void save();
  void saveAs();
  void ok();
  void exit();
  void click();
  void textModified();
  void trialRow();
  void moveBy(int by);
  void undo();
  void redo();

  bool saveTo(const QString& path);
  bool saveFile();
  bool saveAsFile();
  bool keepFirst();
  bool leave();
  bool takeName(QString& problem);
  bool editEquation(std::size_t position);
  int selectedRow();
  void select(int row);
  // Shows a refusal; true when there is none.
  bool done(bool success, const QString& problem);
  void warn(const std::string& text);
  // What is done in the grid; each answers why not, or nothing.
  QString edit(int row, int column, const QString& text);
  QString paste(const std::vector<QStringList>& rows);
  QString move(int from, int to);

  void refresh();
  void refreshTable();
  void refreshGadgets();
  void say(const QString& text);
  std::vector<double> inputs() const;

  ModelContext context_;
  TrialRow trial_;
  std::unique_ptr<ModelEditing> editing_;
  std::shared_ptr<EquationTable> table_;
  int selectedRow_ = -1;
  bool inCell_ = false;  // a cell's editor hands over what was typed
};

}  // namespace tarvex
