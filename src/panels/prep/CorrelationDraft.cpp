#include "panels/prep/CorrelationDraft.h"

#include <algorithm>

#include "correlation/importStein.h"

namespace tarvex {
namespace {

bool standsBefore(const CorrelationCell& one, const CorrelationCell& other) {
  return one.row != other.row ? one.row < other.row : one.column < other.column;
}

}  // namespace

CorrelationDraft::CorrelationDraft(const FactorList& factors)
    : mode(factors.correlationMode), factors_(&factors), stein_(std::shared_ptr<void>(), &factors) {
  for (std::int32_t i = 0; i < factors.factorCount(); ++i) {
    if (factors.isCorrelatable(i) == 1) places_.push_back(i);
    nodes_.push_back(factors.node(i));
    inTree_.push_back(nodes_.back().parent != kNoParentFactor || !nodes_.back().children.empty());
  }
  pairs_ = std::make_shared<const std::vector<CorrelationCell>>(factors.correlatedPairs());
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
  if (row == column) return 1.0F;
  const CorrelationCell cell{std::min(row, column), std::max(row, column)};
  const auto found = std::ranges::lower_bound(*pairs_, cell, standsBefore);
  return found != pairs_->end() && !standsBefore(cell, *found) ? found->value : 0.0F;
}

void CorrelationDraft::setCells(const std::vector<CorrelationCell>& cells) {
  std::vector<CorrelationCell> all = *pairs_;
  for (const CorrelationCell& cell : cells)
    all.push_back({std::min(cell.row, cell.column), std::max(cell.row, cell.column), cell.value});
  std::ranges::stable_sort(all, standsBefore);
  std::vector<CorrelationCell> pairs;
  for (const CorrelationCell& cell : all) {
    if (!pairs.empty() && !standsBefore(pairs.back(), cell)) pairs.pop_back();
    pairs.push_back(cell);
  }
  std::erase_if(pairs, [](const CorrelationCell& cell) { return cell.value == 0.0F; });
  pairs_ = std::make_shared<const std::vector<CorrelationCell>>(std::move(pairs));
}

std::vector<int> CorrelationDraft::correlatedRows() const {
  std::vector<bool> holds(places_.size());
  for (const CorrelationCell& cell : *pairs_)
    holds[static_cast<std::size_t>(cell.row)] = holds[static_cast<std::size_t>(cell.column)] = true;
  std::vector<int> rows;
  for (int row = 0; row < order(); ++row)
    if (holds[static_cast<std::size_t>(row)]) rows.push_back(row);
  return rows;
}

std::vector<float> CorrelationDraft::matrixOf(const std::vector<int>& rows) const {
  std::vector<float> matrix;
  matrix.reserve(rows.size() * rows.size());
  for (const int row : rows)
    for (const int column : rows) matrix.push_back(at(row, column));
  return matrix;
}

bool CorrelationDraft::importStein(const std::string& path, std::string& message, const Progress& progress) {
  const auto list = std::make_shared<FactorList>();
  if (!list->copyFrom(*factors_, message) || !tarvex::importStein(path, kSteinAttach, *list, message, progress))
    return false;
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
  for (const CorrelationCell& cell : list.correlatedPairs())
    if (at(cell.row, cell.column) == 0.0F) taken = copy.setMatrix(cell.row, cell.column, 0.0F) && taken;
  for (const CorrelationCell& cell : *pairs_) taken = copy.setMatrix(cell.row, cell.column, cell.value) && taken;
  if (!taken) {
    message = "The correlations don't belong to these factors.";
    return false;
  }
  list = std::move(copy);
  return true;
}

}  // namespace tarvex
