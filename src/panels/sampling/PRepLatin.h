#pragma once

#include "panels/sampling/PMethod.h"
#include "sampling/RepLatinSampler.h"

namespace tarvex {

// The panel of the replicated Latin hypercube: a base design, its replications, and the factors that are chosen.
class PRepLatin : public PMethod {
 public:
  PRepLatin(const Display& display, const MethodContext& context, QWidget* parent);

 protected:
  SamplerSettings read(Refusal& refusal) override;
  void showState(const SamplerSettings& settings) override;

 private:
  class Elements;

  void changeSampling();
  void clickMatrix();
  std::int64_t mostRuns() const;

  std::shared_ptr<Elements> elements_;
  QString replications_;  // while factors are chosen: what is put back afterwards
};

}  // namespace tarvex
