#pragma once

#include <string>
#include <vector>

namespace tarvex {

class InternalModel;

// What one equation gives in one run.
struct EquationValue {
  bool isKnown = false;
  double value = 0.0;
  std::string reason = {};  // of an unknown one: "Divide by Zero", "x1 has no value"
};

// The value of `text` with these names bound, as many values as names; nan is a name without a value.
EquationValue evaluateEquation(const std::string& text, const std::vector<std::string>& names,
                               const std::vector<double>& values);

// Every equation of the model, as a run computes it, with a value per input. One that fails leaves those without a
// value that use it.
std::vector<EquationValue> evaluateEquations(const InternalModel& model, const std::vector<double>& inputs);

// The names that the equation at `position` can use: the inputs, then the equations above it.
std::vector<std::string> namesAbove(const InternalModel& model, std::size_t position);

}  // namespace tarvex
