#include "plots/strongestFactors.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "base/sortPositions.h"
#include "plots/MeasureColumn.h"
#include "plots/RunTable.h"
#include "plots/measurePlots.h"
#include "postproc/SensitivityStats.h"

namespace tarvex {

namespace {

// The correlation of the ranks, in size.
double rankCorrelation(const std::vector<double>& x, const std::vector<double>& y) {
  std::vector<std::int32_t> a;
  std::vector<std::int32_t> b;
  if (!ranksOf(x, a) || !ranksOf(y, b)) return 0.0;  // a guess at the order of pictures: any will do
  const double n = static_cast<double>(a.size());
  double squares = 0.0;
  for (std::size_t i = 0; i < a.size(); ++i) squares += std::pow(static_cast<double>(a[i]) - b[i], 2);
  return std::abs(1.0 - 6.0 * squares / (n * (n * n - 1.0)));
}

// How strongly a factor acts on a variable: its largest measure. Without one of its own, as in a group, its rank
// correlation, which any measure goes before.
double strengthOf(const RunColumn& factor, const RunColumn& output, const SensitivityStats* stats,
                  std::int32_t variable) {
  constexpr double kBelowMeasures = 1e-6;
  double strength = -1.0;
  if (stats != nullptr)
    for (std::size_t i = 0; i < stats->records.size(); ++i) {
      const IndexRecord& record = stats->records[i];
      if (record.name != factor.name || record.kind != FactorKind::Uncertain) continue;
      for (const MeasureChoice& choice : measureChoices(*stats)) {
        const std::optional<double> value = measureColumn(*stats, variable, choice.slot)[i];
        if (value && std::isfinite(*value)) strength = std::max(strength, std::abs(*value));
      }
    }
  if (strength >= 0.0) return strength;
  const auto [low, high] = std::minmax_element(factor.values.begin(), factor.values.end());
  if (!(*low < *high)) return -1.0;  // a constant: nothing to see
  return kBelowMeasures * rankCorrelation(factor.values, output.values);
}

}  // namespace

std::vector<std::size_t> strongestFactors(const RunTable& table, const RunColumn& output, const SensitivityStats* stats,
                                          std::int32_t variable, std::size_t count) {
  std::vector<std::pair<double, std::size_t>> strengths;
  for (std::size_t c = 0; c < table.columns.size(); ++c) {
    if (!table.columns[c].isFactor) continue;
    const double strength = strengthOf(table.columns[c], output, stats, variable);
    if (strength >= 0.0) strengths.emplace_back(-strength, c);
  }
  std::sort(strengths.begin(), strengths.end());
  std::vector<std::size_t> factors;
  for (const auto& [strength, column] : strengths)
    if (factors.size() < count) factors.push_back(column);
  return factors;
}

}  // namespace tarvex
