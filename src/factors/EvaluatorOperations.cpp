#include "factors/EvaluatorOperations.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace tarvex {
namespace {

// clang-format off
constexpr Function kFunctions[] = {
    {"acos",  std::acos,  nullptr},
    {"asin",  std::asin,  nullptr},
    {"atan",  std::atan,  nullptr},
    {"atan2", nullptr,    std::atan2},
    {"cos",   std::cos,   nullptr},
    {"cosh",  std::cosh,  nullptr},
    {"exp",   std::exp,   nullptr},
    {"fabs",  std::fabs,  nullptr},
    {"fmod",  nullptr,    std::fmod},
    {"log",   std::log,   nullptr},
    {"log10", std::log10, nullptr},
    {"sin",   std::sin,   nullptr},
    {"sinh",  std::sinh,  nullptr},
    {"sqrt",  std::sqrt,  nullptr},
    {"tan",   std::tan,   nullptr},
    {"tanh",  std::tanh,  nullptr},
};
// clang-format on

}  // namespace

double combine(Operation operation, double a, double b) {
  switch (operation) {
    case Operation::kOr:
      return a != 0.0 || b != 0.0;
    case Operation::kAnd:
      return a != 0.0 && b != 0.0;
    case Operation::kEqual:
      return a == b;
    case Operation::kUnequal:
      return a != b;
    case Operation::kLess:
      return a < b;
    case Operation::kLessEqual:
      return a <= b;
    case Operation::kGreater:
      return a > b;
    case Operation::kGreaterEqual:
      return a >= b;
    case Operation::kAdd:
      return a + b;
    case Operation::kSubtract:
      return a - b;
    case Operation::kMultiply:
      return a * b;
    case Operation::kDivide:
      return a / b;
  }
  return 0.0;
}

double assigned(char operation, double before, double right) {
  switch (operation) {
    case '+':
      return before + right;
    case '-':
      return before - right;
    case '*':
      return before * right;
    case '/':
      return before / right;  // Kept: unlike "/", no test of the divisor.
    default:
      return right;
  }
}

const Function* functionOf(std::string_view name) {
  const Function* function = std::find_if(std::begin(kFunctions), std::end(kFunctions),
                                          [name](const Function& entry) { return entry.name == name; });
  return function == std::end(kFunctions) ? nullptr : function;
}

std::vector<std::string_view> functionNames() {
  std::vector<std::string_view> names;
  for (const Function& function : kFunctions) names.push_back(function.name);
  return names;
}

}  // namespace tarvex
