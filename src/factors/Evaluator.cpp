#include "factors/Evaluator.h"

#include <algorithm>

#include "factors/EvaluatorParser.h"

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

bool Evaluator::evaluate(std::string_view text) {
  evalErrorText_.clear();
  evalErrorLine_ = evalErrorColumn_ = 0;
  return EvaluatorParser(*this, text.substr(0, text.find('\0'))).parse();
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
