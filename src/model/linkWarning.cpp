#include "model/linkWarning.h"

#include <unordered_map>

#include "model/InternalModel.h"

namespace tarvex {

namespace {

constexpr std::size_t kMostLines = 10;  // that a message shows

}  // namespace

std::string linkWarning(const std::vector<std::string>& factorNames, const InternalModel& model) {
  std::unordered_map<std::string, std::size_t> inputs;
  for (const ModelVariable& variable : model.variables()) inputs.try_emplace(variable.name, inputs.size());
  std::string lines;
  std::size_t displaced = 0;
  for (std::size_t i = 0; i < factorNames.size(); ++i) {
    const auto input = inputs.find(factorNames[i]);
    if (input == inputs.end() || input->second == i) continue;
    if (++displaced > kMostLines) continue;
    lines += '\n' + factorNames[i] + ": factor " + std::to_string(i + 1) + " of the sample, input " +
             std::to_string(input->second + 1) + " of the model";
  }
  if (displaced == 0) return {};
  if (displaced > kMostLines) lines += "\n... and " + std::to_string(displaced - kMostLines) + " more";
  return "The model takes the factors by position, not by name, and some names are not at the same place:" + lines;
}

}  // namespace tarvex
