#include "model/EquationValues.h"

#include <cmath>
#include <limits>

#include "factors/Equation.h"
#include "factors/Evaluator.h"
#include "factors/NumberLiteral.h"
#include "factors/ValueBindings.h"
#include "model/InternalModel.h"

namespace tarvex {

EquationValue evaluateEquation(const std::string& text, const std::vector<std::string>& names,
                               const std::vector<double>& values) {
  std::vector<double> entering;
  entering.reserve(values.size());
  for (const double value : values) entering.push_back(enteringValue(value));
  EquationValue result;
  Equation equation(text, names);
  result.isKnown = equation.evaluate(entering.data(), result.value);
  if (result.isKnown) return result;
  for (std::size_t i = 0; i < names.size() && result.reason.empty(); ++i)
    if (equation.uses(i) && !std::isfinite(values[i])) result.reason = names[i] + " has no value";
  Evaluator evaluator;
  const bool isBound = ValueBindings(text, names).apply(evaluator, entering.data());
  if (result.reason.empty() && isBound && !evaluator.evaluate(text)) result.reason = evaluator.evalErrorText();
  if (result.reason.empty())
    result.reason = isBound ? "it can't be computed" : "names that no equation can hold, or too many";
  return result;
}

std::vector<std::string> namesAbove(const InternalModel& model, std::size_t position) {
  std::vector<std::string> names;
  for (const ModelVariable& variable : model.variables()) names.push_back(variable.name);
  for (std::size_t i = 0; i < position && i < model.expressions().size(); ++i)
    names.push_back(model.expressions()[i].name);
  return names;
}

std::vector<EquationValue> evaluateEquations(const InternalModel& model, const std::vector<double>& inputs) {
  std::vector<std::string> names = namesAbove(model, 0);
  std::vector<double> values = inputs;
  std::vector<EquationValue> results;
  for (const ModelExpression& expression : model.expressions()) {
    results.push_back(evaluateEquation(expression.text, names, values));
    names.push_back(expression.name);
    values.push_back(results.back().isKnown ? results.back().value : std::numeric_limits<double>::quiet_NaN());
  }
  return results;
}

}  // namespace tarvex
