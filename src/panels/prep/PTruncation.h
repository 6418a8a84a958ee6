#pragma once

#include <vector>

#include "factors/FactorList.h"
#include "toolkit/Panel.h"

namespace tarvex {

// The truncations that new factors take, and on request the truncations of factors that there are.
class PTruncation : public Panel {
 public:
  PTruncation(const Display& display, const FactorList& factors, QWidget* parent);

  // What was accepted: the new defaults, already in force, and the places of the factors that are to take them.
  double left() const { return left_; }
  double right() const { return right_; }
  const std::vector<int>& places() const { return places_; }

 private:
  void ok();
  void help();
  void edited();
  // False where the fields hold no numbers.
  bool read(double& left, double& right);
  std::vector<int> selectedPlaces();

  std::vector<int> truncated_;  // places of the factors that are listed
  double left_ = 0.0;
  double right_ = 0.0;
  std::vector<int> places_;
  bool helpOpen_ = false;
};

}  // namespace tarvex
