#pragma once

#include <memory>

#include "panels/model/ModelEditing.h"
#include "toolkit/Panel.h"

namespace tarvex {

class InputTable;

// The inputs of a model of equations: their order, their names, and which equations use each. Works on a copy.
class PIntModFacList : public Panel {
 public:
  PIntModFacList(const Display& display, const InternalModel& model, QWidget* parent);
  ~PIntModFacList() override;

  const InternalModel& model() const { return editing_->model(); }
  bool changed() const { return editing_->edited(); }

 protected:
  bool closing() override;

 private:
  void addFactor();
  void modify();
  void deleteFac();
  void delAll();
  void moveBy(int by);
  void cancel();
  bool leave();
  void refresh();
  void undo(bool back);
  int selectedRow();
  // The selected input, or -1 after the message.
  int wantSelection();
  void select(int row);
  bool done(bool success, const QString& problem);
  QString rename(int row, const QString& name);
  bool move(int from, int to);
  void say(const QString& text);

  std::unique_ptr<ModelEditing> editing_;
  std::shared_ptr<InputTable> table_;
  bool inCell_ = false;  // a cell's editor hands over what was typed
};

}  // namespace tarvex
