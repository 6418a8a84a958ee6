#pragma once

#include "panels/prep/PDefinition.h"

namespace tarvex {

// The definition panel of a kind whose parameters are single numbers.
class PDistribution : public PDefinition {
 public:
  PDistribution(const Display& display, const Factor& factor, const DefinitionContext& context, QWidget* parent);

 protected:
  std::unique_ptr<Factor> readParameters(Refusal& refusal) override;
  void showParameters(const Factor& factor) override;
};

}  // namespace tarvex
