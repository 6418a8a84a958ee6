#include "factors/Relation.h"

#include <algorithm>
#include <unordered_map>

#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "factors/NumberLiteral.h"

namespace tarvex {

namespace {

constexpr std::int32_t kRelationType = 10;

}  // namespace

Relation::Relation() {
  typeName = "Relation";
  name = "nonameRelat";
}

std::unique_ptr<Factor> Relation::clone() const {
  return std::unique_ptr<Factor>(new Relation(*this));
}

std::int32_t Relation::getType() const {
  return kRelationType;
}

bool Relation::setExpression(const std::string& text) {
  if (!accept(kExpressionRule.problem(text))) return false;
  Evaluator evaluator;
  // Kept: every name is 0.0 here, so "a / b" is refused although it could be computed.
  if (!evaluator.evaluate(text))
    return accept(evaluator.evalErrorText() + " at column " + std::to_string(evaluator.evalErrorColumn()));
  expression_ = text;
  refused_.clear();
  factorNames_.clear();
  for (const Evaluator::Symbol& symbol : evaluator.symbolTable()) factorNames_.push_back(symbol.name);
  bindNames({});
  return true;
}

void Relation::bindNames(const std::vector<std::string>& names) {
  std::unordered_map<std::string_view, std::size_t> places;
  for (std::size_t i = 0; i < names.size(); ++i) places.emplace(names[i], i);
  positions_.clear();
  std::vector<std::string> bound;
  // The last name of the list is assigned first. A name that is no factor is one that the expression assigns itself.
  for (const std::string& used : factorNames_) {
    const auto found = places.find(used);
    if (found == places.end()) continue;
    bound.push_back(used);
    positions_.push_back(found->second);
  }
  equation_ = Equation(expression_, bound);
  entering_.assign(bound.size() * Equation::kBlockRows, 0.0);
}

bool Relation::evaluate(const double* values, double& value) {
  enter(0, values);
  return evaluateEntered(1, &value) == 0;
}

void Relation::enter(std::size_t place, const double* values) {
  for (std::size_t i = 0; i < positions_.size(); ++i)
    entering_[i * Equation::kBlockRows + place] = enteringValue(values[positions_[i]]);
}

std::int32_t Relation::evaluateEntered(std::size_t count, double* results) {
  std::vector<const double*> columns(positions_.size());
  for (std::size_t i = 0; i < columns.size(); ++i) columns[i] = entering_.data() + i * Equation::kBlockRows;
  double failed[Equation::kBlockRows];
  equation_.evaluateRows(columns.data(), count, results, failed);
  std::int32_t failures = 0;
  for (std::size_t i = 0; i < count; ++i) {
    if (failed[i] == 0.0) continue;
    results[i] = 0.0;
    ++failures;
  }
  return failures;
}

bool Relation::usesFactor(std::string_view factorName) const {
  return std::find(factorNames_.begin(), factorNames_.end(), factorName) != factorNames_.end();
}

bool Relation::renameFactor(const std::string& oldName, const std::string& newName) {
  if (!usesFactor(oldName)) return accept("The expression doesn't use " + oldName);
  std::string text;
  std::size_t from = 0;
  // Kept: no look at word boundaries, so renaming "a" changes "ab" as well.
  for (std::size_t at = 0; (at = expression_.find(oldName, from)) != std::string::npos; from = at + oldName.size()) {
    text.append(expression_, from, at - from).append(newName);
  }
  return setExpression(text.append(expression_, from));
}

void Relation::writeParameters(TextWriter& out) const {
  out << "\t\n";
  kExpressionRule.write(out, refused_.empty() ? expression_ : refused_);
  out << '\n';
}

// A refused expression leaves the relation without one; the list is read on.
void Relation::readParameters(TextReader& in) {
  std::string text;
  in.skipLine();
  if (kExpressionRule.read(in, text) && !text.empty() && !setExpression(text)) refused_ = text;
}

}  // namespace tarvex
