#pragma once

#include "toolkit/Panel.h"

namespace tarvex {

// Says which version this is and what it stands on.
class PAbout : public Panel {
 public:
  PAbout(const Display& display, QWidget* parent);
};

}  // namespace tarvex
