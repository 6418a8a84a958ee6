// The equations of a model over runs.
#include <algorithm>

#include "factors/NumberLiteral.h"
#include "model/InternalModel.h"

namespace tarvex {

void InternalModel::prepare() {
  if (prepared_) return;
  std::vector<std::string> names;
  for (const ModelVariable& variable : variables_) names.push_back(variable.name);
  equations_.clear();
  for (const ModelExpression& expression : expressions_) {
    equations_.emplace_back(expression.text, names);
    names.push_back(expression.name);
  }
  entering_.assign(names.size() * kBlockRows, 0.0);
  columns_.resize(names.size());
  isUsed_.assign(names.size(), false);
  for (std::size_t i = 0; i < names.size(); ++i)
    isUsed_[i] = std::ranges::any_of(equations_, [i](const Equation& equation) { return equation.uses(i); });
  prepared_ = true;
}

bool InternalModel::evaluate(const double* values, double* outputs) {
  std::vector<double> row(static_cast<std::size_t>(numOutputs()));
  double failed = 0.0;
  evaluateRows(values, 1, row.data(), &failed);
  if (failed != 0.0) return fail("Error evaluating model");
  std::ranges::copy(row, outputs);
  return true;
}

void InternalModel::evaluateRows(const double* values, std::size_t rows, double* outputs, double* failed) {
  prepare();
  const std::size_t inputs = variables_.size();
  // Of this model: a copy brings its original's.
  for (std::size_t place = 0; place < columns_.size(); ++place) columns_[place] = entering_.data() + place * kBlockRows;
  const auto enter = [this, rows](std::size_t place, const double* from, std::size_t step) {
    if (isUsed_[place]) enteringValues(from, step, rows, entering_.data() + place * kBlockRows);
  };
  for (std::size_t j = 0; j < inputs; ++j) enter(j, values + j, inputs);
  std::fill_n(failed, rows, 0.0);
  const std::size_t width = static_cast<std::size_t>(numOutputs());
  std::size_t output = 0;
  double results[kBlockRows];
  double failures[kBlockRows];
  for (std::size_t e = 0; e < expressions_.size(); ++e) {
    std::fill_n(results, rows, expressions_[e].value);
    equations_[e].evaluateRows(columns_.data(), rows, results, failures);
    for (std::size_t i = 0; i < rows; ++i) failed[i] = std::max(failed[i], failures[i]);
    enter(inputs + e, results, 1);
    if (failed[rows - 1] == 0.0) expressions_[e].value = results[rows - 1];
    if (expressions_[e].type != 1) continue;
    for (std::size_t i = 0; i < rows; ++i) outputs[i * width + output] = results[i];
    ++output;
  }
}

}  // namespace tarvex
