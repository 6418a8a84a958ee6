#pragma once

#include "factors/FactorList.h"
#include "plots/Figure.h"
#include "toolkit/Panel.h"

namespace tarvex {

// The graphs of the factors of a list: density and cumulative of the distribution, histograms of a small sample of what
// will be drawn from it.
class PGraphics : public Panel {
 public:
  // The list must outlive the panel.
  PGraphics(const Display& display, const FactorList& factors, int place, QWidget* parent);

 private:
  enum class Form { Curve, Filled, Counts, Shares, Cumulative, Complement };

  void show(Form form);
  void choose();
  void visualize();
  void saveImg();
  const Factor& factor();
  Figure figure();
  Figure curveOf(const Factor& factor) const;
  Figure sampleOf(const Factor& factor) const;

  const FactorList& factors_;
  Form form_ = Form::Curve;
};

}  // namespace tarvex
