#include "panels/prep/CorrelationDraft.h"

#include <algorithm>

#include "correlation/importStein.h"

namespace tarvex {

CorrelationDraft::CorrelationDraft(const FactorList& factors)
    : mode(factors.correlationMode), factors_(&factors), stein_(std::shared_ptr<void>(), &factors) {
  for (std::int32_t i = 0; i < factors.factorCount(); ++i) {
    if (factors.isCorrelatable(i) == 1) places_.push_back(i);
    nodes_.push_back(factors.node(i));
    inTree_.push_back(nodes_.back().parent != kNoParentFactor || !nodes_.back().children.empty());
  }
  std::vector<float> matrix;
  matrix.reserve(places_.size() * places_.size());
  for (int row = 0; row < order(); ++row)
    for (int column = 0; column < order(); ++column) matrix.push_back(factors.matrixAt(row, column));
  setMatrix(std::move(matrix));
}

QStringList CorrelationDraft::names() const {
  QStringList names;
  for (const int place : places_) names << name(place);
  return names;
}

bool CorrelationDraft::isWithin(int place, int ancestor) const {
  for (; place != kNoParentFactor; place = node(place).parent)
    if (place == ancestor) return true;
  return false;
}

void CorrelationDraft::unlink(int place) {
  if (node(place).parent != kNoParentFactor) std::erase(nodeAt(node(place).parent).children, place);
  nodeAt(place).parent = kNoParentFactor;
  nodeAt(place).correlation = 0.0;
}

void CorrelationDraft::link(int child, int parent, std::size_t at, double correlation) {
  std::vector<std::int32_t>& children = nodeAt(parent).children;
  // A place counts the children as they are before the move.
  const auto before = std::find(children.begin(), children.end(), child);
  if (before != children.end() && at > static_cast<std::size_t>(before - children.begin())) --at;
  unlink(child);
  children.insert(children.begin() + static_cast<std::ptrdiff_t>(std::min(at, children.size())), child);
  nodeAt(child).parent = parent;
  nodeAt(child).correlation = correlation;
  inTree_[static_cast<std::size_t>(child)] = true;
  inTree_[static_cast<std::size_t>(parent)] = true;
}

void CorrelationDraft::makeRoot(int place) {
  unlink(place);
  inTree_[static_cast<std::size_t>(place)] = true;
}

void CorrelationDraft::takeOut(int place) {
  const std::vector<std::int32_t> children = node(place).children;
  for (const std::int32_t child : children) unlink(child);
  unlink(place);
  inTree_[static_cast<std::size_t>(place)] = false;
}

int CorrelationDraft::links() const {
  return static_cast<int>(
      std::ranges::count_if(nodes_, [](const CorrelationNode& node) { return node.parent != kNoParentFactor; }));
}

float CorrelationDraft::at(int row, int column) const {
  return (*matrix_)[static_cast<std::size_t>(row) * places_.size() + static_cast<std::size_t>(column)];
}

void CorrelationDraft::setCells(const std::vector<CorrelationCell>& cells) {
  std::vector<float> matrix = *matrix_;
  for (const CorrelationCell& cell : cells) {
    const auto row = static_cast<std::size_t>(cell.row);
    const auto column = static_cast<std::size_t>(cell.column);
    matrix[row * places_.size() + column] = cell.value;
    matrix[column * places_.size() + row] = cell.value;
  }
  setMatrix(std::move(matrix));
}

int CorrelationDraft::correlatedPairs() const {
  int pairs = 0;
  for (int row = 0; row < order(); ++row)
    for (int column = 0; column < row; ++column) pairs += at(row, column) != 0.0F ? 1 : 0;
  return pairs;
}

bool CorrelationDraft::importStein(const std::string& path, std::string& message) {
  const auto list = std::make_shared<FactorList>();
  if (!list->copyFrom(*factors_, message) || !tarvex::importStein(path, kSteinAttach, *list, message)) return false;
  stein_ = list;
  mode = kSteinSample;
  return true;
}

bool CorrelationDraft::applyTo(FactorList& list, std::string& message) const {
  FactorList copy;
  if (!copy.copyFrom(list, message)) return false;
  if (stein_.get() != factors_ && !copy.steinInfo.assign(stein_->steinInfo)) {
    message = copy.steinInfo.errorText();
    return false;
  }
  copy.steinFileName = stein_->steinFileName;
  copy.correlationMode = mode;
  bool taken = true;
  for (const int place : places_) taken = copy.link(place, kNoParentFactor, 0.0) && taken;
  // A parent's children in their order, which files keep.
  for (const int place : places_)
    for (const std::int32_t child : node(place).children)
      taken = copy.link(child, place, node(child).correlation) && taken;
  for (int row = 0; row < order(); ++row)
    for (int column = 0; column < row; ++column)
      if (copy.matrixAt(row, column) != at(row, column)) taken = copy.setMatrix(row, column, at(row, column)) && taken;
  if (!taken) {
    message = "The correlations don't belong to these factors.";
    return false;
  }
  list = std::move(copy);
  return true;
}

}  // namespace tarvex
