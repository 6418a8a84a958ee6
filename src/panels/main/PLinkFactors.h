#pragma once

#include "model/InternalModel.h"
#include "panels/main/PLink.h"

namespace tarvex {

class FactorList;

// Puts the inputs of a model of equations into the order of the sample's factors, since an input takes the column of
// its place. Works on a copy; model() is the result once the panel was accepted.
class PLinkFactors : public PLink {
 public:
  // Requires: as many inputs as factors.
  PLinkFactors(const Display& display, const FactorList& factors, const InternalModel& model, QWidget* parent);

  const InternalModel& model() const { return model_; }

 protected:
  void moved(int from, int to) override { model_.moveVariable(from, to); }

 private:
  InternalModel model_;
};

}  // namespace tarvex
