#include <fmt/format.h>

#include <algorithm>

#include "plots/RunTable.h"
#include "plots/columnCorrelations.h"
#include "report/Document.h"
#include "report/StudySections.h"

namespace tarvex {

void addCorrelationMap(Document& out, const RunTable& columns, std::size_t factors, const Progress& progress) {
  constexpr std::size_t kMostFactors = 24, kMostColumns = 30;  // more can't be read on a page
  const std::size_t all = columns.columns.size();
  if (factors < 2 || all == 0) return;
  out.add(Heading{"Rank correlations", 2});
  if (factors > kMostFactors)
    return out.add(
        Remark{fmt::format("A map of the rank correlations of {} factors can't be read on a page.", factors)});
  const std::size_t count = std::min(all, kMostColumns);
  RunTable part;  // the columns may be large: copies are made only where some are left out
  part.runs = columns.runs;
  for (std::size_t i = 0; count < all && i < count; ++i) part.columns.push_back(columns.columns[i]);
  CorrelationMatrix matrix;
  std::string problem;
  if (!correlateColumns(count < all ? part : columns, {}, CorrelationKind::Ranks, matrix, problem, progress)) {
    if (!progress.stopped()) out.add(Remark{problem});
    return;
  }
  out.add(correlationMap(matrix));
  out.add(Caption{Caption::Of::Figure,
                  count < all ? fmt::format("Rank correlations of the factors and the first {} of {} variables",
                                            count - factors, all - factors)
                              : "Rank correlations of the factors and the variables"});
}

}  // namespace tarvex
