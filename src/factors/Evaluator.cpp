#include "factors/Evaluator.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "factors/EvaluatorPass.h"

namespace tarvex {

namespace {

// The place of `name` in a sorted table: its own, or where it would be inserted.
template <class Table>
auto placeOf(Table& table, std::string_view name) {
  return std::lower_bound(
      table.begin(), table.end(), name,
      [](const Evaluator::Symbol& symbol, std::string_view wanted) { return symbol.name.compare(wanted) < 0; });
}

}  // namespace

// Computes at once, with the table's values.
class Evaluator::Machine {
 public:
  using Value = double;

  explicit Machine(Evaluator& evaluator) : evaluator_(evaluator) {}

  static double number(double value) { return value; }
  bool read(std::string_view name, double& value) {
    const double* symbol = evaluator_.lookup(name);
    if (symbol != nullptr) value = *symbol;
    return symbol != nullptr;
  }
  bool assign(char operation, std::string_view name, double right, double& value) {
    double* symbol = evaluator_.lookup(name);
    if (symbol == nullptr) return false;
    value = *symbol = assigned(operation, *symbol, right);
    return true;
  }

  static bool combine(Operation operation, double right, double& value) {
    if (operation == Operation::kDivide && right == 0.0) return false;
    value = tarvex::combine(operation, value, right);
    return true;
  }
  static double power(double base, double exponent) { return std::pow(base, exponent); }
  static double negate(double value) { return -value; }
  static double invert(double value) { return value == 0.0; }
  static double choose(double condition, double yes, double no) { return condition != 0.0 ? yes : no; }
  static double call(const Function& function, const double* arguments) {
    return function.one ? function.one(arguments[0]) : function.two(arguments[0], arguments[1]);
  }

 private:
  Evaluator& evaluator_;
};

bool Evaluator::evaluate(std::string_view text) {
  Machine machine(*this);
  EvaluatorPass<Machine> pass(machine, text);
  const bool done = pass.parse();
  evalErrorText_ = pass.error().text;
  evalErrorLine_ = pass.error().line;
  evalErrorColumn_ = pass.error().column;
  if (evalErrorText_ == EvaluatorPass<Machine>::kStackOverflow)
    std::fprintf(stderr, "\nParser stack overflow, line %d, column %d\n", evalErrorLine_, evalErrorColumn_);
  return done;
}

const double* Evaluator::find(std::string_view name) const {
  const auto place = placeOf(symbolTable_, name);
  return place != symbolTable_.end() && place->name == name ? &place->value : nullptr;
}

bool Evaluator::bind(std::string_view name, double value) {
  double* place = lookup(name);
  if (place) *place = value;
  return place != nullptr;
}

double* Evaluator::lookup(std::string_view name) {
  auto place = placeOf(symbolTable_, name);
  if (place == symbolTable_.end() || place->name != name) {
    if (symbolTable_.size() >= kMaxSymbols) return nullptr;
    place = symbolTable_.insert(place, Symbol{std::string(name), 0.0});
  }
  return &place->value;
}

}  // namespace tarvex
