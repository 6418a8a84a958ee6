#include "factors/ExpressionCheck.h"

#include <algorithm>

#include "factors/namesInText.h"

namespace tarvex {

std::size_t placeInText(const std::string& text, int line, int column) {
  constexpr int kTab = 8;
  std::size_t at = 0;
  for (; line > 1 && at < text.size(); ++at)
    if (text[at] == '\n') --line;
  for (int reached = 1; reached < column && at < text.size() && text[at] != '\n'; ++at)
    reached = text[at] == '\t' ? (reached - 1) / kTab * kTab + kTab + 1 : reached + 1;
  return at;
}

ExpressionCheck checkExpression(const std::string& text, const std::vector<std::string>& names) {
  const Trial outcome = tryExpression(text, names);
  if (outcome == Trial::kGood) return {};
  if (outcome == Trial::kUnknownName) {
    ExpressionCheck check{outcome, {}, text.size()};
    for (const auto& [name, isAssigned] : namesInText(text)) {
      const auto place = static_cast<std::size_t>(name.data() - text.data());
      if (std::ranges::find(names, name) != names.end() || place >= check.place) continue;
      check.place = place;
      check.reason = '\'' + std::string(name) + "' is no factor";
    }
    return check;
  }
  Evaluator evaluator;
  for (const auto& [name, isAssigned] : namesInText(text))
    static_cast<void>(evaluator.bind(name, 0.5));  // if it fails: a full table
  if (evaluator.evaluate(text)) return {outcome, "The expression can't be computed at every value", 0};
  return {outcome, evaluator.evalErrorText(),
          placeInText(text, evaluator.evalErrorLine(), evaluator.evalErrorColumn())};
}

}  // namespace tarvex
