#include "factors/Relation.h"

#include <algorithm>

#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "factors/NumberLiteral.h"

namespace tarvex {

namespace {

constexpr std::int32_t kRelationType = 10;
constexpr std::size_t kMaxFileExpression = 254;  // characters of the line in a factor file

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
  Evaluator evaluator;
  // Kept: every name is 0.0 here, so "a / b" is refused although it could be computed.
  if (!evaluator.evaluate(text)) return false;
  expression_ = text;
  factorNames_.clear();
  for (const Evaluator::Symbol& symbol : evaluator.symbolTable()) factorNames_.push_back(symbol.name);
  prepared_ = false;
  return true;
}

void Relation::prepare(const std::vector<std::string>& names) const {
  positions_.clear();
  std::vector<std::string> bound;
  // The last name of the list is assigned first. A name that is no factor is one that the expression assigns itself.
  for (const std::string& used : factorNames_) {
    const auto found = std::find(names.begin(), names.end(), used);
    if (found == names.end()) continue;
    bound.push_back(used);
    positions_.push_back(static_cast<std::size_t>(found - names.begin()));
  }
  equation_ = Equation(expression_, bound);
  entering_.resize(bound.size());
  preparedNames_ = names;
  prepared_ = true;
}

bool Relation::evaluate(const std::vector<std::string>& names, const double* values, double& value) const {
  if (!prepared_ || preparedNames_ != names) prepare(names);
  for (std::size_t i = 0; i < positions_.size(); ++i) entering_[i] = enteringValue(values[positions_[i]]);
  value = 0.0;
  return equation_.evaluate(entering_.data(), value);
}

bool Relation::usesFactor(std::string_view factorName) const {
  return std::find(factorNames_.begin(), factorNames_.end(), factorName) != factorNames_.end();
}

bool Relation::renameFactor(const std::string& oldName, const std::string& newName) {
  const auto found = std::find(factorNames_.begin(), factorNames_.end(), oldName);
  if (found == factorNames_.end()) return false;
  *found = newName;
  prepared_ = false;
  std::string text;
  std::size_t from = 0;
  // Kept: no look at word boundaries, so renaming "a" changes "ab" as well.
  for (std::size_t at = 0; (at = expression_.find(oldName, from)) != std::string::npos; from = at + oldName.size()) {
    text.append(expression_, from, at - from).append(newName);
  }
  setExpression(text.append(expression_, from));
  return true;
}

void Relation::writeParameters(TextWriter& out) const {
  out << "\t\n" << expression_ << "\n\n";
}

void Relation::readParameters(TextReader& in) {
  std::string text;
  in.skipLine();
  if (in.readLine(text, kMaxFileExpression)) setExpression(text);  // a refused one leaves the expression empty
}

}  // namespace tarvex
