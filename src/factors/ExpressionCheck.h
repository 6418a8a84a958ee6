#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "factors/Equation.h"

namespace tarvex {

// How an expression that a user types fares, and where it is wrong.
struct ExpressionCheck {
  Trial outcome = Trial::kGood;
  std::string reason = {};  // "Divide by Zero", "'x9' is no factor"; empty of a good one
  std::size_t place = 0;    // of the mistake, in bytes from the start of the text
};

// tryExpression() with the place of what it found.
ExpressionCheck checkExpression(const std::string& text, const std::vector<std::string>& names);

// The byte at a line and a column as the evaluator counts them: from 1, with tabs at every eighth column.
std::size_t placeInText(const std::string& text, int line, int column);

}  // namespace tarvex
