#include "factors/RelationPreview.h"

#include <algorithm>
#include <memory>
#include <random>
#include <set>

#include "factors/Constant.h"
#include "factors/FactorList.h"
#include "factors/Relation.h"
#include "factors/SampledSummary.h"

namespace tarvex {
namespace {

constexpr auto kRows = static_cast<std::size_t>(RelationPreview::kRows);

// The factors that the expression reads, straight or through relations above.
std::set<std::int32_t> neededBy(const FactorList& list, const Relation& relation, std::int32_t end) {
  std::set<std::int32_t> needed;
  std::vector<const Relation*> open{&relation};
  while (!open.empty()) {
    const Relation& next = *open.back();
    open.pop_back();
    for (const std::string& name : next.factorNames()) {
      const std::int32_t i = list.indexOf(name);
      if (i == -1 || !needed.insert(i).second) continue;
      const auto* const other = dynamic_cast<const Relation*>(&list.factor(i));
      if (other != nullptr && i < end) open.push_back(other);
    }
  }
  return needed;
}

// One value from each of as many equal parts, in an order of the factor's own.
bool drawColumn(const Factor& factor, std::uint32_t seed, std::vector<double>& column) {
  if (const auto* const constant = dynamic_cast<const Constant*>(&factor)) {
    std::ranges::fill(column, constant->value());
    return true;
  }
  if (!stratifiedSample(factor, column)) return false;
  std::mt19937 generator(seed);
  for (std::size_t i = kRows - 1; i > 0; --i) std::swap(column[i], column[generator() % (i + 1)]);
  return true;
}

}  // namespace

bool previewRelation(const FactorList& list, const std::string& expression, std::int32_t place,
                     RelationPreview& preview, std::string& message) {
  Relation relation;
  if (!relation.setExpression(expression)) {
    message = relation.errorText;
    return false;
  }
  const std::int32_t end = place < 0 ? list.factorCount() : place;
  std::vector<std::string> names;
  std::vector<std::vector<double>> columns;
  const auto compute = [&](Relation& computed, std::vector<double>& results) {
    computed.bindNames(names);
    std::vector<double> row(names.size());
    std::int32_t failures = 0;
    for (std::size_t r = 0; r < kRows; ++r) {
      for (std::size_t k = 0; k < columns.size(); ++k) row[k] = columns[k][r];
      if (!computed.evaluate(row.data(), results[r])) ++failures;
    }
    return failures;
  };
  const std::set<std::int32_t> needed = neededBy(list, relation, end);
  for (const bool isRelation : {false, true})  // relations read what stands already
    for (const std::int32_t i : needed) {
      if ((list.isRelation(i) == 1) != isRelation) continue;
      std::vector<double> column(kRows, 0.0);
      if (!isRelation && !drawColumn(list.factor(i), static_cast<std::uint32_t>(i) + 1, column)) {
        message = "nothing can be sampled from " + list.factor(i).name;
        return false;
      }
      if (isRelation && i < end) {
        const std::unique_ptr<Factor> copy = list.factor(i).clone();
        static_cast<void>(compute(static_cast<Relation&>(*copy), column));  // its failures are its own panel's
      }
      names.push_back(list.factor(i).name);
      columns.push_back(std::move(column));
    }
  preview.values.assign(kRows, 0.0);
  preview.failures = compute(relation, preview.values);
  return true;
}

}  // namespace tarvex
