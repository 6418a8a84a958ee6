#pragma once

#include "panels/prep/IntervalTable.h"
#include "panels/prep/PDefinition.h"

namespace tarvex {

// The definition panel of the kinds over a list of intervals or points.
class PTabulated : public PDefinition {
 public:
  PTabulated(const Display& display, const Factor& factor, const DefinitionContext& context, QWidget* parent);

 protected:
  std::unique_ptr<Factor> readParameters(Refusal& refusal) override;
  void showParameters(const Factor& factor) override;

 private:
  void add();
  void del();
  void load();
  void save();
  void rowsChanged(int selected);

  std::shared_ptr<IntervalTable> table_;
};

}  // namespace tarvex
