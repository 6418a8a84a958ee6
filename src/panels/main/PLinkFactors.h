#pragma once

#include <memory>
#include <string>
#include <vector>

#include "model/InternalModel.h"
#include "toolkit/Panel.h"

namespace tarvex {

class FactorList;
class LinkTable;

// Puts the inputs of a model of equations into the order of the sample's factors: row by row, since an input takes the
// column of its place. Works on a copy; model() is the result once the panel was accepted.
class PLinkFactors : public Panel {
 public:
  // Requires: as many inputs as factors.
  PLinkFactors(const Display& display, const FactorList& factors, const InternalModel& model, QWidget* parent);

  const InternalModel& model() const { return model_; }

 private:
  void move(int by);
  void pairNames();
  void showRows(int selected);
  int selectedRow();

  std::vector<std::string> factors_;
  InternalModel model_;
  std::shared_ptr<LinkTable> table_;
};

}  // namespace tarvex
