#include "postproc/RankColumns.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/sortPositions.h"

namespace tarvex {

bool RankColumns::add(const sampValues& table, const Progress& progress) {
  std::vector<double> values;
  for (std::int32_t column = 0; column < table.columns(); ++column) {
    if (!progress.report(column, table.columns()) || !table.getColumn(column, values)) return false;
    const double from = static_cast<double>(column) / table.columns();
    std::vector<std::int32_t> ranks;
    if (!ranksOf(values, ranks, progress.part(from, (column + 1.0) / table.columns()))) return false;
    for (std::int32_t& rank : ranks) ++rank;
    ranks_.push_back(std::move(ranks));
    gaps_.push_back(std::any_of(values.begin(), values.end(), [](double x) { return std::isnan(x); }));
  }
  return true;
}

void RankColumns::row(std::int32_t row, double* values) const {
  for (std::size_t column = 0; column < ranks_.size(); ++column)
    values[column] =
        gaps_[column] ? std::numeric_limits<double>::quiet_NaN() : ranks_[column][static_cast<std::size_t>(row)];
}

}  // namespace tarvex
