#pragma once

#include <string>
#include <vector>

#include "toolkit/Panel.h"

namespace tarvex {

// Moves names between what is available and what is selected.
class PUaSelect : public Panel {
 public:
  struct Prompts {
    QString title = "Variable selection";
    QString available = "A&vailable variables";
    QString selected = "&Selected variables";
    QString prompt = "Select the variables to be displayed :";
  };
  // The first selection are places among the names.
  PUaSelect(const Display& display, const std::vector<std::string>& names, const std::vector<int>& selected,
            const Prompts& prompts, QWidget* parent);

  // Places among the names, in the order of the list of the selected ones.
  std::vector<int> selected();

 private:
  void move(const char* from, const char* to, bool all);
  void refresh();
  void ok();
};

}  // namespace tarvex
