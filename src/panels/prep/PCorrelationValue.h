#pragma once

#include "toolkit/Panel.h"

namespace tarvex {

// Asks for one correlation.
class PCorrelationValue : public Panel {
 public:
  // `pair` says what it is of: "a with b". A value of 0 is none yet.
  PCorrelationValue(const Display& display, const QString& pair, double value, QWidget* parent);

  // Of use once the panel was accepted.
  double value() const { return value_; }

 private:
  void apply();
  void edited();
  bool read(QString& why);

  double value_;
};

}  // namespace tarvex
