#pragma once

#include <functional>

#include "toolkit/Panel.h"

namespace tarvex {

// Asks for another name of an input, and says beforehand who uses the old one.
class PnewFactorName : public Panel {
 public:
  // Answers why the name can't be had, or nothing; the panel stays until there is nothing.
  using Rename = std::function<QString(const QString& name)>;

  PnewFactorName(const Display& display, const QString& name, const QString& uses, Rename rename, QWidget* parent);

 private:
  void ok();

  Rename rename_;
};

}  // namespace tarvex
