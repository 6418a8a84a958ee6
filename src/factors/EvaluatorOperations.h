#pragma once

#include <string_view>
#include <vector>

namespace tarvex {

// What the calculator language computes with, the same for all that evaluate it.

enum class Operation {
  kOr,
  kAnd,
  kEqual,
  kUnequal,
  kLess,
  kLessEqual,
  kGreater,
  kGreaterEqual,
  kAdd,
  kSubtract,
  kMultiply,
  kDivide
};

// Without a test of the divisor.
double combine(Operation operation, double a, double b);
// What a name holds behind "+=", "-=", "*=", "/=", told by their first character, or "=".
double assigned(char operation, double before, double right);

// One of both is null.
struct Function {
  std::string_view name;
  double (*one)(double);
  double (*two)(double, double);
};

// Null for a name that is none.
const Function* functionOf(std::string_view name);
// Those that there are, sorted.
std::vector<std::string_view> functionNames();

}  // namespace tarvex
