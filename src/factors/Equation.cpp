#include "factors/Equation.h"

#include <algorithm>

#include "base/uniformRandom.h"
#include "factors/NumberLiteral.h"

namespace tarvex {

namespace {

// Takes the value of the text. Belongs to the symbols, so a text can read and use it as well.
constexpr std::string_view kResultName = "rEsUlTtOtAl";

}  // namespace

Equation::Equation(std::string_view text, const std::vector<std::string>& names)
    : program_(std::string(kResultName) + " = " + std::string(text)), bindings_(program_, names) {}

bool Equation::evaluate(const double* values, double& value) {
  evaluator_.clearSymbols();
  if (!bindings_.apply(evaluator_, values) || !evaluator_.evaluate(program_)) return false;
  value = *evaluator_.find(kResultName);
  return true;
}

Trial tryExpression(std::string_view text, const std::vector<std::string>& bound,
                    const std::vector<std::string>& known) {
  std::vector<double> values(bound.size());
  for (double& value : values) value = enteringValue(trialRandom());
  Evaluator evaluator;
  if (!ValueBindings(text, bound).apply(evaluator, values.data()) || !evaluator.evaluate(text)) return Trial::kFailed;
  const auto holds = [](const std::vector<std::string>& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
  };
  const bool allKnown = std::ranges::all_of(evaluator.symbolTable(), [&](const Evaluator::Symbol& symbol) {
    return holds(bound, symbol.name) || holds(known, symbol.name);
  });
  return allKnown ? Trial::kGood : Trial::kUnknownName;
}

}  // namespace tarvex
