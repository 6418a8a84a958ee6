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
    : text_(std::string(kResultName) + " = " + std::string(text)), bindings_(text_, names), columns_(names.size()) {
  std::vector<EquationProgram::Input> inputs;
  for (const ValueBindings::Slot& slot : bindings_.slots()) inputs.push_back({slot.name, slot.used, slot.position});
  isCompiled_ = bindings_.possible() && program_.compile(text_, inputs, kResultName);
}

bool Equation::evaluate(const double* values, double& value) {
  if (!isCompiled_) return evaluateText(values, value);
  for (const ValueBindings::Slot& slot : bindings_.slots()) columns_[slot.position] = values + slot.position;
  double found = 0.0;
  double failed = 0.0;
  program_.run(columns_.data(), 1, &found, &failed);
  if (failed == 0.0) value = found;
  return failed == 0.0;
}

void Equation::evaluateRows(const double* const* columns, std::size_t rows, double* values, double* failed) {
  if (isCompiled_) return program_.run(columns, rows, values, failed);
  std::vector<double> row(columns_.size());
  for (std::size_t i = 0; i < rows; ++i) {
    for (const ValueBindings::Slot& slot : bindings_.slots())
      if (slot.used) row[slot.position] = columns[slot.position][i];
    failed[i] = evaluateText(row.data(), values[i]) ? 0.0 : 1.0;
  }
}

bool Equation::uses(std::size_t position) const {
  return std::ranges::any_of(bindings_.slots(), [position](const ValueBindings::Slot& slot) {
    return slot.used && slot.position == position;
  });
}

bool Equation::evaluateText(const double* values, double& value) {
  evaluator_.clearSymbols();
  if (!bindings_.apply(evaluator_, values) || !evaluator_.evaluate(text_)) return false;
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
