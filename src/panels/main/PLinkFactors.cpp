#include "panels/main/PLinkFactors.h"

#include "factors/FactorList.h"

namespace tarvex {
namespace {

std::vector<std::string> namesOf(const FactorList& factors) {
  std::vector<std::string> names;
  for (std::int32_t i = 0; i < factors.factorCount(); ++i) names.push_back(factors.factor(i).name);
  return names;
}

std::vector<std::string> inputsOf(const InternalModel& model) {
  std::vector<std::string> names;
  for (const ModelVariable& input : model.variables()) names.push_back(input.name);
  return names;
}

}  // namespace

PLinkFactors::PLinkFactors(const Display& display, const FactorList& factors, const InternalModel& model,
                           QWidget* parent)
    : PLink(display,
            {"PLinkFactors",
             "Link between model and sample factors",
             {"Sample factor", "Model input", "factor"},
             "No model factor selected",
             "Inputs beside a factor of another name: "},
            namesOf(factors), namesOf(factors), inputsOf(model), parent),
      model_(model) {}

}  // namespace tarvex
