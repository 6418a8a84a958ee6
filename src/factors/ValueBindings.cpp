#include "factors/ValueBindings.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

#include "factors/Evaluator.h"
#include "factors/EvaluatorParser.h"
#include "factors/namesInText.h"

namespace tarvex {

namespace {

// The name that the assignment sets: white space around it doesn't belong to it. Empty when there is none.
std::string_view assignedName(std::string_view name) {
  constexpr std::string_view kSpace = " \t\n\v\f\r";
  name.remove_prefix(std::min(name.find_first_not_of(kSpace), name.size()));
  name = name.substr(0, name.find_last_not_of(kSpace) + 1);
  const bool good = !name.empty() && name.size() <= EvaluatorParser::kMaxNameCharacters &&
                    EvaluatorParser::isNameStart(name.front()) &&
                    std::ranges::all_of(name, EvaluatorParser::isNameCharacter);
  return good ? name : std::string_view();
}

}  // namespace

ValueBindings::ValueBindings(std::string_view text, const std::vector<std::string>& names) {
  const std::map<std::string_view, bool> used = namesInText(text);
  // Names that the text doesn't use matter only where all together may fill the symbol table.
  constexpr std::size_t kResult = 1;
  const bool tableMayFill = names.size() + used.size() + kResult > Evaluator::kMaxSymbols;
  std::set<std::string_view> bound;
  for (std::size_t i = 0; i < names.size(); ++i) {
    const std::string_view name = assignedName(names[i]);
    if (name.empty()) possible_ = false;
    const bool isUsed = used.contains(name);
    if ((isUsed || tableMayFill) && bound.insert(name).second) slots_.push_back({std::string(name), i, isUsed});
  }
  // In the table's order, so that each is appended to it.
  std::sort(slots_.begin(), slots_.end(), [](const Slot& a, const Slot& b) { return a.name < b.name; });
}

bool ValueBindings::apply(Evaluator& evaluator, const double* values) const {
  if (!possible_) return false;
  for (const Slot& slot : slots_) {
    const double value = slot.used ? values[slot.position] : 0.0;
    if (!std::isfinite(value) || !evaluator.bind(slot.name, value)) return false;
  }
  return true;
}

}  // namespace tarvex
