#include "factors/FactorList.h"

#include <algorithm>
#include <utility>

namespace tarvex {
namespace {

bool isCorrelation(double value) {
  return value >= -1.0 && value <= 1.0;
}

}  // namespace

bool FactorList::copyFrom(const FactorList& other, std::string& message) {
  if (this == &other) return true;
  FactorList copy;
  if (!copy.steinInfo.assign(other.steinInfo)) {
    message = copy.steinInfo.errorText();
    return false;
  }
  copy.correlationMode = other.correlationMode;
  copy.steinFileName = other.steinFileName;
  copy.nodes_ = other.nodes_;
  copy.pairs_ = other.pairs_;
  copy.factors_.reserve(other.factors_.size());
  for (const auto& factor : other.factors_) copy.factors_.push_back(factor->clone());
  *this = std::move(copy);
  return true;
}

std::int32_t FactorList::correlatableCount() const {
  return static_cast<std::int32_t>(
      std::count_if(factors_.begin(), factors_.end(), [](const auto& factor) { return factor->isStochastic(); }));
}

std::int32_t FactorList::indexOf(std::string_view name) const {
  const auto found = std::find_if(factors_.begin(), factors_.end(), [&](const auto& f) { return f->name == name; });
  return found == factors_.end() ? -1 : static_cast<std::int32_t>(found - factors_.begin());
}

std::int32_t FactorList::isCorrelatable(std::int32_t i) const {
  if (i < 0 || i >= factorCount()) return -1;
  return factor(i).isStochastic() ? 1 : 0;
}

std::int32_t FactorList::isRelation(std::int32_t i) const {
  if (i < 0 || i >= factorCount()) return -1;
  return factor(i).isRelation() ? 1 : 0;
}

std::int32_t FactorList::isConstant(std::int32_t i) const {
  if (i < 0 || i >= factorCount()) return -1;
  return factor(i).isConstant() ? 1 : 0;
}

void FactorList::addFactor(std::unique_ptr<Factor> factor, CorrelationNode node) {
  factors_.push_back(std::move(factor));
  nodes_.push_back(std::move(node));
}

void FactorList::clear() {
  *this = FactorList();
}

bool FactorList::link(std::int32_t child, std::int32_t parent, double correlation) {
  if (!isCorrelation(correlation)) return false;
  if (isCorrelatable(child) != 1 || (parent != -1 && isCorrelatable(parent) != 1)) return false;
  for (std::int32_t ancestor = parent; ancestor != -1; ancestor = node(ancestor).parent) {
    if (ancestor == child) return false;
  }
  CorrelationNode& linked = nodeAt(child);
  if (linked.parent != parent) {
    if (linked.parent != -1) std::erase(nodeAt(linked.parent).children, child);
    if (parent != -1) nodeAt(parent).children.push_back(child);
    linked.parent = parent;
  }
  linked.correlation = parent == -1 ? 0.0 : correlation;
  return true;
}

float FactorList::matrixAt(std::int32_t row, std::int32_t column) const {
  if (row == column) return 1.0F;
  const auto [first, second] = std::minmax(row, column);
  const auto place = static_cast<std::size_t>(first);
  const auto behind = static_cast<std::size_t>(second - first - 1);
  return place < pairs_.size() && behind < pairs_[place].size() ? pairs_[place][behind] : 0.0F;
}

bool FactorList::setMatrix(std::int32_t row, std::int32_t column, float correlation) {
  if (!isCorrelation(correlation) || (row == column && correlation != 1.0F)) return false;
  if (row != column) setPair(std::min(row, column), std::max(row, column), correlation);
  return true;
}

// Requires: row below column.
void FactorList::setPair(std::int32_t row, std::int32_t column, float correlation) {
  const auto place = static_cast<std::size_t>(row);
  const auto behind = static_cast<std::size_t>(column - row - 1);
  const bool isHeld = place < pairs_.size() && behind < pairs_[place].size();
  if (!isHeld && correlation == 0.0F) return;
  if (place >= pairs_.size()) pairs_.resize(place + 1);
  std::vector<float>& cells = pairs_[place];
  if (!isHeld) cells.resize(behind + 1, 0.0F);
  cells[behind] = correlation;
  while (!cells.empty() && cells.back() == 0.0F) cells.pop_back();
  while (!pairs_.empty() && pairs_.back().empty()) pairs_.pop_back();
}

std::vector<CorrelationCell> FactorList::correlatedPairs() const {
  std::vector<CorrelationCell> found;
  for (std::size_t row = 0; row < pairs_.size(); ++row)
    for (std::size_t behind = 0; behind < pairs_[row].size(); ++behind)
      if (pairs_[row][behind] != 0.0F)
        found.push_back(
            {static_cast<std::int32_t>(row), static_cast<std::int32_t>(row + 1 + behind), pairs_[row][behind]});
  return found;
}

void FactorList::prepareOrder() {
  factorOrder_.clear();
  std::vector<std::int32_t> level;
  for (std::int32_t i = 0; i < factorCount(); ++i) {
    if (isCorrelatable(i) == 1 && parentOf(i) == -1) level.push_back(i);
  }
  while (!level.empty()) {
    std::sort(level.begin(), level.end());
    factorOrder_.insert(factorOrder_.end(), level.begin(), level.end());
    std::vector<std::int32_t> next;
    if (correlationMode == kDependenceTree) {
      for (const std::int32_t i : level) next.insert(next.end(), node(i).children.begin(), node(i).children.end());
    }
    level = std::move(next);
  }
  for (std::int32_t i = 0; i < factorCount(); ++i) {
    if (isConstant(i) == 1) factorOrder_.push_back(i);
  }
  for (std::int32_t i = 0; i < factorCount(); ++i) {
    if (isRelation(i) == 1) factorOrder_.push_back(i);
  }
}

std::int32_t FactorList::parentOf(std::int32_t i) const {
  return correlationMode == kDependenceTree ? node(i).parent : -1;
}

}  // namespace tarvex
