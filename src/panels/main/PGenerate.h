#pragma once

#include <QElapsedTimer>
#include <cstdint>

#include "toolkit/Panel.h"

namespace tarvex {

// Progress of a generation, a run of equations and whatever else takes its time, with a button that stops it.
class PGenerate : public Panel {
 public:
  // `rows`: the runs that it is about; 0 when it is about none.
  PGenerate(const Display& display, const QString& name, const QString& title, std::int32_t rows, QWidget* parent);

  std::int32_t continueRun = 1;  // 0 once the user has asked for the stop

  // Percent from 0 to 100; others are passed over.
  void setPercentage(double value);
  void setStatus(const QString& text);
  void setHeading(const QString& text);

 protected:
  bool closing() override;

 private:
  void stop();

  std::int32_t rows_;
  QElapsedTimer since_;
};

}  // namespace tarvex
