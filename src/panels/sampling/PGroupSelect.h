#pragma once

#include <string>
#include <vector>

#include "sampling/SamplerSettings.h"
#include "toolkit/Panel.h"

namespace tarvex {

// Selects the factors of a group from those that are in none.
class PGroupSelect : public Panel {
 public:
  PGroupSelect(const Display& display, const NamedGroup& group, const std::vector<std::string>& available,
               QWidget* parent);

  // As they stand in the list of the selected ones.
  std::vector<std::string> members();

 private:
  void move(const char* from, const char* to);
  void refresh();
};

}  // namespace tarvex
