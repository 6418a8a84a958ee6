#pragma once

#include "postproc/UaStats.h"
#include "toolkit/Panel.h"

namespace tarvex {

// What uncertainty statistics are shown with.
struct UaSettings {
  double tchebyConfidence = 0.75;
  double kolmogorovConfidence = 0.9;
  HistogramScale scale = kLinearScale;
};

class PUaSetting : public Panel {
 public:
  // `noLogScale` says why there is no logarithmic scale; empty when there is one.
  PUaSetting(const Display& display, const UaSettings& settings, const QString& noLogScale, QWidget* parent);

  UaSettings settings();

 private:
  void tell();

  UaSettings before_;
};

}  // namespace tarvex
