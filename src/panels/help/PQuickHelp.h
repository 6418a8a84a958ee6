#pragma once

#include <cstdint>

#include "toolkit/Panel.h"

namespace tarvex {

// The word on a sampling method beside the list from which it is chosen. It never takes the keyboard from that list.
class PQuickHelp : public Panel {
 public:
  // `parent` is the window with the list.
  PQuickHelp(const Display& display, QWidget* parent);

  // Shows picture and text of a method, to the right of the parent at first. Hides the panel for no method (-1).
  void showMethod(std::int32_t methodId);

 private:
  void place();
};

}  // namespace tarvex
