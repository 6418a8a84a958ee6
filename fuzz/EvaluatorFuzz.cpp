// A text of the calculator language, with a few names bound.

#include <algorithm>

#include "FuzzInput.h"
#include "factors/Evaluator.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tarvex;
  Evaluator evaluator;
  if (!evaluator.bind("x1", 0.25) || !evaluator.bind("x2", -3.0)) fuzz::finding("a name can't be bound", {});
  const bool good = evaluator.evaluate(fuzz::textOf(data, size));
  if (!good && evaluator.evalErrorText().empty()) fuzz::finding("a failure without a text", {});
  const auto& table = evaluator.symbolTable();
  const auto byName = [](const Evaluator::Symbol& a, const Evaluator::Symbol& b) { return a.name < b.name; };
  if (table.size() > Evaluator::kMaxSymbols) fuzz::finding("the table is over its limit", {});
  if (!std::is_sorted(table.begin(), table.end(), byName)) fuzz::finding("the table is not sorted", {});
  return 0;
}
