#pragma once

#include "factors/FactorList.h"
#include "toolkit/Panel.h"

namespace tarvex {

// A list of factors for reading.
class PVisInputFactors : public Panel {
 public:
  // Requires: a list that nobody changes while the panel is there.
  PVisInputFactors(const Display& display, std::shared_ptr<const FactorList> factors, QWidget* parent);

 private:
  void selectItem();
  void visualize();

  std::shared_ptr<const FactorList> factors_;
  int selected_ = -1;
};

}  // namespace tarvex
