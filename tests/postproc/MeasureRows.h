#pragma once

#include <cstdint>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "postproc/FastStats.h"

namespace tarvex {

// A record of a result that is written by hand: the values of its second variable.
struct MeasureRow {
  std::string name;
  FactorKind kind;
  std::vector<double> values;
  std::vector<std::string> factors = {};
};

// A computed result of two variables; the first one's values are 9.
template <class Stats>
Stats resultOf(const std::vector<MeasureRow>& rows) {
  Stats stats;
  stats.variableCount = 2;
  stats.factorCount = static_cast<std::int32_t>(rows.size());
  if constexpr (std::is_same_v<Stats, FastStats>) stats.recordCount = stats.factorCount;
  stats.computed = true;
  for (const MeasureRow& row : rows) {
    std::vector<double> values(row.values.size(), 9.0);
    values.insert(values.end(), row.values.begin(), row.values.end());
    stats.records.push_back({row.name, row.kind, std::move(values), row.factors});
  }
  return stats;
}

}  // namespace tarvex
