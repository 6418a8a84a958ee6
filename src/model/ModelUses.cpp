#include "model/ModelUses.h"

#include <algorithm>

#include "factors/namesInText.h"
#include "model/InternalModel.h"

namespace tarvex {

std::vector<std::string> equationsUsing(const InternalModel& model, const std::string& name) {
  std::vector<std::string> users;
  for (const ModelExpression& expression : model.expressions())
    if (namesInText(expression.text).contains(name)) users.push_back(expression.name);
  return users;
}

std::string listed(const std::vector<std::string>& names) {
  constexpr std::size_t kShown = 4;
  std::string text;
  for (std::size_t i = 0; i < std::min(names.size(), kShown); ++i) {
    const bool isLast = i + 1 == names.size();
    text += (i == 0 ? "" : isLast ? " and " : ", ") + names[i];
  }
  return names.size() > kShown ? text + " and " + std::to_string(names.size() - kShown) + " more" : text;
}

std::string missingNames(const InternalModel& model, std::size_t position) {
  const std::vector<ModelExpression>& expressions = model.expressions();
  for (const auto& [word, isAssigned] : namesInText(expressions[position].text)) {
    const std::string name(word);
    if (isAssigned || std::ranges::find(model.variables(), name, &ModelVariable::name) != model.variables().end())
      continue;
    const auto found = std::ranges::find(expressions, name, &ModelExpression::name);
    const auto place = static_cast<std::size_t>(found - expressions.begin());
    if (place < position) continue;
    if (found == expressions.end()) return name + " is no input and no equation; it reads as 0";
    return name + (place == position ? " is this equation itself" : " stands below this equation") + "; it reads as 0";
  }
  return {};
}

}  // namespace tarvex
