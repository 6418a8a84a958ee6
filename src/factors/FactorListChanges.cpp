// The changes that a user makes in a list: order, removal, replacement, names.

#include <algorithm>
#include <utility>

#include "factors/FactorList.h"
#include "factors/Relation.h"

namespace tarvex {

std::int32_t FactorList::matrixRowOf(std::int32_t i) const {
  std::int32_t row = 0;
  for (std::int32_t k = 0; k < i; ++k) row += isCorrelatable(k);
  return row;
}

void FactorList::takeMatrixRows(const std::vector<std::int32_t>& rows) {
  const std::vector<CorrelationCell> former = correlatedPairs();
  if (former.empty()) return;
  pairs_.clear();
  std::vector<std::int32_t> newRow(factors_.size(), -1);
  for (std::size_t k = 0; k < rows.size(); ++k)
    if (rows[k] >= 0) newRow[static_cast<std::size_t>(rows[k])] = static_cast<std::int32_t>(k);
  for (const CorrelationCell& cell : former) {
    const std::int32_t row = newRow[static_cast<std::size_t>(cell.row)];
    const std::int32_t column = newRow[static_cast<std::size_t>(cell.column)];
    if (row != -1 && column != -1) setPair(std::min(row, column), std::max(row, column), cell.value);
  }
}

void FactorList::unlink(std::int32_t i) {
  const std::vector<std::int32_t> children = node(i).children;
  for (const std::int32_t child : children) static_cast<void>(link(child, -1, 0.0));  // to a root always goes
  static_cast<void>(link(i, -1, 0.0));
}

void FactorList::arrange(const std::vector<std::int32_t>& places) {
  std::vector<std::int32_t> newPlace(factors_.size(), -1);
  for (std::size_t k = 0; k < places.size(); ++k)
    newPlace[static_cast<std::size_t>(places[k])] = static_cast<std::int32_t>(k);
  for (std::int32_t i = 0; i < factorCount(); ++i)
    if (newPlace[static_cast<std::size_t>(i)] == -1) unlink(i);

  std::vector<std::int32_t> rowOf(factors_.size(), 0);
  for (std::size_t i = 1; i < rowOf.size(); ++i)
    rowOf[i] = rowOf[i - 1] + isCorrelatable(static_cast<std::int32_t>(i) - 1);
  std::vector<std::int32_t> rows;
  std::vector<std::unique_ptr<Factor>> factors;
  std::vector<CorrelationNode> nodes;
  for (const std::int32_t place : places) {
    if (isCorrelatable(place) == 1) rows.push_back(rowOf[static_cast<std::size_t>(place)]);
    CorrelationNode moved = std::move(nodeAt(place));
    if (moved.parent != -1) moved.parent = newPlace[static_cast<std::size_t>(moved.parent)];
    for (std::int32_t& child : moved.children) child = newPlace[static_cast<std::size_t>(child)];
    nodes.push_back(std::move(moved));
  }
  takeMatrixRows(rows);
  for (const std::int32_t place : places) factors.push_back(std::move(factors_[static_cast<std::size_t>(place)]));
  factors_ = std::move(factors);
  nodes_ = std::move(nodes);
}

void FactorList::replaceFactor(std::int32_t i, std::unique_ptr<Factor> factor) {
  const bool was = isCorrelatable(i) == 1;
  const bool becomes = factor->isStochastic();
  std::unique_ptr<Factor>& place = factors_[static_cast<std::size_t>(i)];
  if (was == becomes) {  // thousands at once, where they are pasted
    place = std::move(factor);
    return;
  }
  if (was) unlink(i);
  const std::int32_t row = matrixRowOf(i);
  const std::int32_t sampled = correlatableCount();
  place = std::move(factor);
  std::vector<std::int32_t> rows;
  for (std::int32_t k = 0; k < sampled; ++k)
    if (becomes || k != row) rows.push_back(k);
  if (becomes) rows.insert(rows.begin() + row, -1);
  takeMatrixRows(rows);
}

bool FactorList::renameFactor(std::int32_t i, const std::string& name, std::string& message) {
  const std::string old = factor(i).name;
  if (name == old) return true;
  message = Factor::kNameRule.problem(name);
  if (!message.empty()) return false;
  if (indexOf(name) != -1) {
    message = kNameInUse;
    return false;
  }
  std::vector<std::pair<std::int32_t, std::unique_ptr<Factor>>> renamed;
  for (std::int32_t k = 0; k < factorCount(); ++k) {
    const auto* relation = dynamic_cast<const Relation*>(&factor(k));
    if (relation == nullptr || !relation->usesFactor(old)) continue;
    std::unique_ptr<Factor> copy = relation->clone();
    if (!static_cast<Relation&>(*copy).renameFactor(old, name)) {
      message = "The relation " + relation->name + " can't follow: " + copy->errorText;
      return false;
    }
    renamed.emplace_back(k, std::move(copy));
  }
  for (auto& [place, relation] : renamed) factors_[static_cast<std::size_t>(place)] = std::move(relation);
  factor(i).name = name;
  return true;
}

bool FactorList::isCorrelated(std::int32_t i) const {
  if (isCorrelatable(i) != 1) return false;
  if (correlationMode == kDependenceTree) return node(i).parent != -1 || !node(i).children.empty();
  if (correlationMode != kImanConover) return false;
  const std::int32_t row = matrixRowOf(i);
  const auto place = static_cast<std::size_t>(row);
  if (place < pairs_.size() && !pairs_[place].empty()) return true;
  for (std::int32_t above = 0; above < row && static_cast<std::size_t>(above) < pairs_.size(); ++above)
    if (matrixAt(above, row) != 0.0F) return true;
  return false;
}

void FactorList::dropStein() {
  steinInfo.clear();
  steinFileName.clear();
  if (correlationMode == kSteinSample) correlationMode = kNoCorrelation;
}

}  // namespace tarvex
