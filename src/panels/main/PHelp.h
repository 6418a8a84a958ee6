#pragma once

#include "toolkit/Panel.h"

namespace tarvex {

// A hint or the description of a case: a heading over a picture or a text.
class PHelp : public Panel {
 public:
  // `bitmap` is looked up on the display's path; a picture that isn't there leaves its place empty.
  PHelp(const Display& display, const QString& title, const QString& heading, const QString& bitmap, QWidget* parent);
};

}  // namespace tarvex
