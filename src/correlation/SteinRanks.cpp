#include "correlation/SteinRanks.h"

#include <utility>

#include "base/Memory.h"
#include "base/sortPositions.h"
#include "factors/FactorList.h"

namespace tarvex {

namespace {

// Appends the ranks of one block by itself. False when there isn't enough memory, and after a stop.
bool appendRanks(std::vector<double>::const_iterator block, std::int32_t rows, std::vector<std::int32_t>& ranks,
                 const Progress& progress) {
  std::vector<std::int32_t> ofBlock;
  return ranksOf({block, block + rows}, ofBlock, progress) &&
         fitsInMemory([&] { ranks.insert(ranks.end(), ofBlock.begin(), ofBlock.end()); });
}

}  // namespace

SteinRanks::SteinRanks(const FactorList& factors, std::int32_t rows, std::int32_t blockRows, std::int32_t blocks,
                       const Progress& progress) {
  valid_ = accepts(factors, rows);
  const double count = factors.factorCount();
  const auto columns = static_cast<std::size_t>(factors.correlatableCount());
  if (valid_) ranks_ = PlaceColumns(columns, static_cast<std::size_t>(blockRows) * static_cast<std::size_t>(blocks));
  std::size_t place = 0;
  for (std::int32_t i = 0; valid_ && i < factors.factorCount(); ++i)
    if (factors.isCorrelatable(i) == 1)
      valid_ = putRanks(factors.steinInfo, i, blockRows, blocks, place++, progress.part(i / count, (i + 1) / count));
  if (!valid_) ranks_ = {};
}

// Of the first blocks of a column, each block by itself.
bool SteinRanks::putRanks(const sampValues& stein, std::int32_t column, std::int32_t blockRows, std::int32_t blocks,
                          std::size_t place, const Progress& progress) {
  std::vector<double> values;
  if (!stein.getColumn(column, values)) {
    errorText = stein.errorText();
    return false;
  }
  std::vector<std::int32_t> ranks;
  for (std::int32_t block = 0; block < blocks; ++block) {
    const Progress ofBlock = progress.part(block / (blocks + 0.0), (block + 1) / (blocks + 0.0));
    if (appendRanks(values.begin() + std::ptrdiff_t{block} * blockRows, blockRows, ranks, ofBlock)) continue;
    errorText = progress.stopped() ? kStoppedText : kNotEnoughMemory;
    return false;
  }
  if (ranks_.put(place, std::move(ranks))) return true;
  errorText = ranks_.errorText();
  return false;
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

}  // namespace tarvex
