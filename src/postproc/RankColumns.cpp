#include "postproc/RankColumns.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "base/Cores.h"
#include "base/sortPositions.h"

namespace tarvex {
namespace {

constexpr std::size_t kSharedRows = 10000;  // from here on the start of a thread is little

}  // namespace

bool RankColumns::add(const sampValues& table, const Progress& progress) {
  struct Column {
    std::vector<double> values;
    std::vector<std::int32_t> ranks;
    bool isRanked = false;
  };
  std::vector<Column> together(static_cast<std::size_t>(table.rows()) < kSharedRows ? 1 : Cores::count());
  for (std::int32_t column = 0; column < table.columns();) {
    const std::size_t count = std::min(together.size(), static_cast<std::size_t>(table.columns() - column));
    for (std::size_t i = 0; i < count; ++i)
      if (!progress.report(column, table.columns()) ||
          !table.getColumn(column + static_cast<std::int32_t>(i), together[i].values))
        return false;
    const std::int32_t next = column + static_cast<std::int32_t>(count);
    const auto share = [&table](std::int32_t done) { return static_cast<double>(done) / table.columns(); };
    const Progress watched = progress.part(share(column), share(next));
    inParts(count, 1, [&](std::size_t part, std::size_t first, std::size_t last) {
      for (std::size_t i = first; i < last; ++i)
        together[i].isRanked = ranksOf(together[i].values, together[i].ranks, part == 0 ? watched : Progress());
    });
    for (std::size_t i = 0; i < count; ++i) {
      Column& done = together[i];
      if (!done.isRanked) return false;
      for (std::int32_t& rank : done.ranks) ++rank;
      ranks_.push_back(std::move(done.ranks));
      gaps_.push_back(std::any_of(done.values.begin(), done.values.end(), [](double x) { return std::isnan(x); }));
    }
    column = next;
  }
  return true;
}

void RankColumns::rows(std::int32_t row, std::int32_t count, double* values) const {
  const std::size_t columns = ranks_.size();
  for (std::size_t column = 0; column < columns; ++column) {
    const std::int32_t* const ranks = ranks_[column].data() + row;
    double* to = values + column;
    for (std::int32_t i = 0; i < count; ++i, to += columns)
      *to = gaps_[column] ? std::numeric_limits<double>::quiet_NaN() : ranks[i];
  }
}

}  // namespace tarvex
