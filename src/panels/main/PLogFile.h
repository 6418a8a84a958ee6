#pragma once

#include "toolkit/Panel.h"

namespace tarvex {

// Shows a text file that the user picks: what a model printed.
class PLogFile : public Panel {
 public:
  PLogFile(const Display& display, QWidget* parent);
  // The same with a file at once.
  PLogFile(const Display& display, const QString& path, QWidget* parent);

 private:
  void fileOpen();
  void load(const QString& path);
};

}  // namespace tarvex
