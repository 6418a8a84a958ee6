#include "correlation/SteinRanks.h"

#include "base/sortPositions.h"
#include "factors/FactorList.h"

namespace tarvex {

namespace {

// Ranks of the first blocks of a column, each block by itself.
std::vector<std::int32_t> blockRanks(const std::vector<double>& column, std::int32_t blockRows, std::int32_t blocks) {
  std::vector<std::int32_t> ranks;
  auto blockStart = column.begin();
  for (std::int32_t block = 0; block < blocks; ++block) {
    const auto blockEnd = blockStart + blockRows;
    const std::vector<std::int32_t> ofBlock = ranksOf({blockStart, blockEnd});
    ranks.insert(ranks.end(), ofBlock.begin(), ofBlock.end());
    blockStart = blockEnd;
  }
  return ranks;
}

}  // namespace

SteinRanks::SteinRanks(const FactorList& factors, std::int32_t rows, std::int32_t blockRows, std::int32_t blocks) {
  valid_ = accepts(factors, rows);
  std::vector<double> column;
  for (std::int32_t i = 0; valid_ && i < factors.factorCount(); ++i)
    if (factors.isCorrelatable(i) == 1) {
      factors.steinInfo.getColumn(i, column);
      ranks_.push_back(blockRanks(column, blockRows, blocks));
    }
}

bool SteinRanks::accepts(const FactorList& factors, std::int32_t rows) {
  const sampValues& stein = factors.steinInfo;
  if (stein.rows() == 0)
    errorText = "The Stein correlation sample is empty.\nNo correlation can be calculated.";
  else if (stein.rows() < rows)
    errorText = "The Stein sample has fewer rows than the sample to generate.";
  else if (stein.columns() < factors.factorCount())
    errorText = "The Stein sample has fewer columns than the list has factors.";
  else
    return true;
  return false;
}

std::int32_t SteinRanks::rankOf(std::int32_t column, std::int32_t row) const {
  if (column < 0 || static_cast<std::size_t>(column) >= ranks_.size() || row < 0) return 0;
  const std::vector<std::int32_t>& ranks = ranks_[static_cast<std::size_t>(column)];
  return static_cast<std::size_t>(row) < ranks.size() ? ranks[static_cast<std::size_t>(row)] : 0;
}

}  // namespace tarvex
