#pragma once

#include "panels/sampling/PMethod.h"

namespace tarvex {

// The panel of the Sobol design: which indices, and the runs that they take.
class PSobol : public PMethod {
 public:
  PSobol(const Display& display, const MethodContext& context, QWidget* parent);

 protected:
  SamplerSettings read(Refusal& refusal) override;
  std::unique_ptr<Sampler> make(const SamplerSettings& settings, Refusal& refusal) override;
  void showState(const SamplerSettings& settings) override;

 private:
  void designChanged();
};

}  // namespace tarvex
