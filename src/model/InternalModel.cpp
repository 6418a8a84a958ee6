#include "model/InternalModel.h"

#include <algorithm>

#include "base/Names.h"
#include "factors/namesInText.h"
#include "model/EquationTrial.h"

namespace tarvex {

namespace {

constexpr std::string_view kForbidden = " /*-+()|!$&=?'^[]#@,;.:<>\"\\";

template <class Item>
bool isIndex(const std::vector<Item>& items, std::int32_t index) {
  return index >= 0 && static_cast<std::size_t>(index) < items.size();
}

template <class Item>
bool holds(const std::vector<Item>& items, const std::string& name) {
  return std::ranges::find(items, name, &Item::name) != items.end();
}

template <class Item>
std::vector<std::string> namesOf(const std::vector<Item>& items) {
  std::vector<std::string> names;
  names.reserve(items.size());
  for (const Item& item : items) names.push_back(item.name);
  return names;
}

// Notes in each of the first `count` items that `text`, which stands at `index`, mentions it.
template <class Item>
void addUses(std::vector<Item>& items, std::size_t count, const std::string& text, std::int32_t index) {
  for (std::size_t i = 0; i < count; ++i) {
    if (usesName(items[i].name, text)) items[i].usedBy.push_back(index);
  }
}

template <class Item>
void dropUses(std::vector<Item>& items, std::size_t count, std::int32_t index) {
  for (std::size_t i = 0; i < count; ++i) {
    std::vector<std::int32_t>& uses = items[i].usedBy;
    const auto last = std::find(uses.rbegin(), uses.rend(), index);
    if (last != uses.rend()) uses.erase(std::next(last).base());
  }
}

}  // namespace

bool isModelName(const std::string& name) {
  if (name.empty() || (name.front() >= '0' && name.front() <= '9')) return false;
  if (!InternalModel::kNameRule.problem(name).empty()) return false;
  return std::ranges::none_of(name, [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < ' ' || byte >= 127 || kForbidden.find(c) != std::string_view::npos;
  });
}

bool usesName(const std::string& name, const std::string& text) {
  // Kept: an occurrence inside a longer word hides all that follow.
  const std::size_t start = text.find(name);
  if (start == std::string::npos) return false;
  const std::size_t behind = text.find_first_not_of(' ', start + name.size());
  constexpr std::string_view kOperators = "*+-/()";
  if (behind != std::string::npos && kOperators.find(text[behind]) == std::string_view::npos) return false;
  if (start == 0) return true;
  const std::size_t before = text.find_last_not_of(' ', start - 1);
  return before == std::string::npos || kOperators.find(text[before]) != std::string_view::npos;
}

bool InternalModel::fail(const std::string& text) {
  errorText_ = text;
  return false;
}

bool InternalModel::isGoodNewVariable(const std::string& name) {
  if (!isModelName(name)) return fail("Incorrect factor name");
  return !holds(variables_, name) || fail("Factor already inserted in the list");
}

bool InternalModel::addVariable(const std::string& name) {
  if (!isGoodNewVariable(name)) return false;
  variables_.push_back({name, {}});
  prepared_ = false;
  return true;
}

bool InternalModel::renameVariable(std::int32_t index, const std::string& name) {
  if (!isIndex(variables_, index)) return fail("Index out of range");
  if (!isGoodNewVariable(name)) return false;
  ModelVariable& variable = variables_[static_cast<std::size_t>(index)];
  replaceInUsers(variable.usedBy, variable.name, name);
  variable.name = name;
  prepared_ = false;
  return true;
}

void InternalModel::moveVariable(std::int32_t from, std::int32_t to) {
  if (!isIndex(variables_, from) || !isIndex(variables_, to)) return;
  ModelVariable moved = std::move(variables_[static_cast<std::size_t>(from)]);
  variables_.erase(variables_.begin() + from);
  variables_.insert(variables_.begin() + to, std::move(moved));
  prepared_ = false;
}

bool InternalModel::removeVariable(std::int32_t index) {
  if (variables_.empty()) return fail("No Factor to delete");
  if (!isIndex(variables_, index)) return fail("Factor to remove not found");
  if (!variables_[static_cast<std::size_t>(index)].usedBy.empty()) {
    return fail("Factor currently in use, I can't delete it");
  }
  variables_.erase(variables_.begin() + index);
  prepared_ = false;
  return true;
}

bool InternalModel::checkExpression(std::int32_t position, const std::string& name, const std::string& text) {
  problem_ = kEquationRule.problem(text);
  if (!problem_.empty()) return fail(problem_);
  const std::vector<std::string> known = namesOf(expressions_);
  std::vector<std::string> bound = namesOf(variables_);
  bound.insert(bound.end(), known.begin(), known.begin() + position);
  const EquationTrial trial = tryEquation(text, bound, known);
  if (trial.outcome != Trial::kGood) problem_ = trial.reason;
  if (trial.outcome == Trial::kFailed) return fail("Current expression cannot be evaluated\n Syntax error.");
  if (trial.outcome == Trial::kUnknownName) return fail("Current expression cannot be evaluated.\n Unknown Variable.");
  if (!trial.reason.empty())
    warningText_ += (warningText_.empty() ? "" : "\n") + ("The equation of " + name) +
                    " fails at the values that it was tried with: " + trial.reason;
  return true;
}

bool InternalModel::addExpression(std::int32_t position, const std::string& name, const std::string& text,
                                  std::int16_t type) {
  const std::int32_t index = numExpressions();
  if (index >= kMaxExpressions) return fail("Too much expressions: max number of expression 500");
  if (!isModelName(name)) return fail("Incorrect expression name");
  if (holds(expressions_, name)) return fail("Expression name already in the list");
  position = std::clamp(position, 0, index);
  if (!checkExpression(position, name, text)) return false;
  // Kept: the uses are noted under the list's length, wherever the expression goes.
  addUses(variables_, variables_.size(), text, index);
  addUses(expressions_, expressions_.size(), text, index);
  expressions_.insert(expressions_.begin() + position, {name, text, type, 0.0, {}});
  prepared_ = false;
  return true;
}

bool InternalModel::modifyExpression(std::int32_t position, const std::string& name, const std::string& text,
                                     std::int16_t type) {
  if (!isIndex(expressions_, position)) return fail("Expression not found");
  ModelExpression& expression = expressions_[static_cast<std::size_t>(position)];
  const bool renamed = name != expression.name;
  if (renamed && !isModelName(name)) return fail("Incorrect expression name");
  if (renamed && holds(expressions_, name)) return fail("Variable already inserted in the list");
  if (!checkExpression(position, name, text)) return false;
  if (renamed) replaceInUsers(expression.usedBy, expression.name, name);
  const std::size_t before = static_cast<std::size_t>(position);
  dropUses(variables_, variables_.size(), position);
  dropUses(expressions_, before, position);
  addUses(variables_, variables_.size(), text, position);
  addUses(expressions_, before, text, position);
  expression.name = name;
  expression.text = text;
  expression.type = type;
  expression.value = 0.0;
  prepared_ = false;
  return true;
}

bool InternalModel::removeExpression(std::int32_t index) {
  if (!isIndex(expressions_, index)) return fail("Expression not found");
  if (!expressions_[static_cast<std::size_t>(index)].usedBy.empty()) {
    return fail("The expression is in use, I can't delete it");
  }
  dropUses(variables_, variables_.size(), index);
  dropUses(expressions_, expressions_.size(), index);
  // Kept: the uses noted under higher indices stay as they are until the model is loaded again.
  expressions_.erase(expressions_.begin() + index);
  prepared_ = false;
  return true;
}

bool InternalModel::moveExpression(std::int32_t from, std::int32_t to) {
  if (!isIndex(expressions_, from) || !isIndex(expressions_, to)) return fail("Index out of range");
  const ModelExpression& moved = expressions_[static_cast<std::size_t>(from)];
  for (std::int32_t i = std::min(from, to); i <= std::max(from, to); ++i) {
    const ModelExpression& passed = expressions_[static_cast<std::size_t>(i)];
    const ModelExpression& user = to < from ? moved : passed;
    const ModelExpression& used = to < from ? passed : moved;
    if (i != from && namesInText(user.text).contains(used.name))
      return fail(user.name + " uses " + used.name + " and has to stay below it.");
  }
  const auto place = expressions_.begin() + from;
  if (to < from)
    std::rotate(expressions_.begin() + to, place, place + 1);
  else
    std::rotate(place, place + 1, expressions_.begin() + to + 1);
  for (ModelVariable& variable : variables_) variable.usedBy.clear();
  for (ModelExpression& expression : expressions_) expression.usedBy.clear();
  for (std::size_t i = 0; i < expressions_.size(); ++i) {
    const std::string& text = expressions_[i].text;
    addUses(variables_, variables_.size(), text, static_cast<std::int32_t>(i));
    addUses(expressions_, i, text, static_cast<std::int32_t>(i));
  }
  prepared_ = false;
  return true;
}

void InternalModel::replaceInUsers(const std::vector<std::int32_t>& users, const std::string& oldName,
                                   const std::string& newName) {
  for (const std::int32_t user : users) {
    if (!isIndex(expressions_, user)) continue;
    std::string& text = expressions_[static_cast<std::size_t>(user)].text;
    // Kept: only the first occurrence in each text, word or not.
    const std::size_t at = text.find(oldName);
    if (at != std::string::npos) text.replace(at, oldName.size(), newName);
  }
}

bool InternalModel::getExpression(std::int32_t index, ModelExpression& out) {
  if (!isIndex(expressions_, index)) return fail("Index out of range");
  out = expressions_[static_cast<std::size_t>(index)];
  return true;
}

bool InternalModel::expressionName(std::int32_t index, std::string& out) {
  if (!isIndex(expressions_, index)) return fail("Index out of range");
  out = expressions_[static_cast<std::size_t>(index)].name;
  return true;
}

bool InternalModel::expressionText(std::int32_t index, std::string& out) {
  if (!isIndex(expressions_, index)) return fail("Index out of range");
  out = expressions_[static_cast<std::size_t>(index)].text;
  return true;
}

std::int16_t InternalModel::expressionType(std::int32_t index) {
  if (isIndex(expressions_, index)) return expressions_[static_cast<std::size_t>(index)].type;
  fail("Index out of range");
  return -1;
}

bool InternalModel::variableName(std::int32_t index, std::string& out) {
  if (!isIndex(variables_, index)) return fail("Index out of range");
  out = variables_[static_cast<std::size_t>(index)].name;
  return true;
}

bool InternalModel::expressionOfType(std::int16_t type, std::int32_t k, std::string& out) {
  for (const ModelExpression& expression : expressions_) {
    if (expression.type != type || k-- != 0) continue;
    out = expression.name;
    return true;
  }
  return fail("Index out of Range");
}

bool InternalModel::outputName(std::int32_t k, std::string& out) {
  return expressionOfType(1, k, out);
}

bool InternalModel::internalName(std::int32_t k, std::string& out) {
  return expressionOfType(0, k, out);
}

std::int32_t InternalModel::numOutputs() const {
  return static_cast<std::int32_t>(std::ranges::count(expressions_, 1, &ModelExpression::type));
}

std::int32_t InternalModel::numInternals() const {
  return static_cast<std::int32_t>(std::ranges::count(expressions_, 0, &ModelExpression::type));
}

bool InternalModel::setName(const std::string& name) {
  const std::string problem = kNameRule.problem(name);
  if (!problem.empty()) return fail(problem);
  // The file's reader takes the first word of the line.
  if (firstWord(name).size() != name.size()) return fail("the name holds white space");
  name_ = name.empty() ? "noname" : name;
  return true;
}

bool InternalModel::setFileName(const std::string& path) {
  const std::string problem = kFileNameRule.problem(path);
  if (!problem.empty()) return fail(problem);
  fileName_ = path.empty() ? kNoFile : path;
  return true;
}

void InternalModel::clear() {
  *this = InternalModel();
}

}  // namespace tarvex
