#pragma once

#include "toolkit/Panel.h"

namespace tarvex {

class Factor;

// What a factor is, for reading: the definition panel's content without a way to change it.
class PInspector : public Panel {
 public:
  PInspector(const Display& display, const Factor& factor, QWidget* parent);
};

}  // namespace tarvex
