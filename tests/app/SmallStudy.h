#pragma once

#include "factors/Uniform.h"
#include "model/InternalModel.h"
#include "model/ModelChoice.h"
#include "sampling/PrepSettings.h"
#include "sampling/RandomSampler.h"
#include "support/Test.h"

namespace tarvex::test {

// Random runs of uniform factors, as the pre-processor's panel hands them back.
inline PrepSettings randomRuns(const std::vector<std::string>& names, std::int32_t runs, const std::string& file) {
  PrepSettings settings;
  for (const std::string& name : names) {
    auto factor = std::make_unique<Uniform>();
    factor->name = name;
    settings.factors.addFactor(std::move(factor));
  }
  settings.sampler = std::make_unique<RandomSampler>();
  EXPECT_TRUE(settings.sampler->setSamples(runs));
  settings.sampleFile = file;
  return settings;
}

// The model y = `text` of the inputs.
inline ModelChoice equation(const std::string& text, const std::vector<std::string>& inputs = {"a", "b"}) {
  auto model = std::make_unique<InternalModel>();
  for (const std::string& name : inputs) EXPECT_TRUE(model->addVariable(name));
  EXPECT_TRUE(model->addExpression(0, "y", text, 1));
  ModelChoice choice;
  choice.setInternalModel(std::move(model));
  return choice;
}

}  // namespace tarvex::test
