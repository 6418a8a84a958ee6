#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "factors/Equation.h"

namespace tarvex {

// How an equation fares at throw-away values of the names that it may use, and why.
struct EquationTrial {
  Trial outcome = Trial::kGood;
  // Of a failure: "unknown function 'max'". Of a good outcome: why the equation couldn't be computed at these values
  // ("Divide by Zero"), though it can at others; mostly empty.
  std::string reason = {};
  std::size_t place = 0;  // of what is wrong, in bytes from the start of the text
};

// As tryExpression has it, but for an equation that fails only because of the values that it met: that one is good.
EquationTrial tryEquation(const std::string& text, const std::vector<std::string>& bound,
                          const std::vector<std::string>& known);

}  // namespace tarvex
