#include "report/CorrelationReport.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "report/Document.h"

namespace tarvex {

namespace {

constexpr std::size_t kWidestMatrix = 10;
constexpr std::size_t kPairsShown = 20;

std::string correlationCell(double r) {
  return fmt::format("{:.3f}", r);
}

void addMatrix(Document& out, const std::vector<std::string>& names,
               const std::function<double(std::int32_t, std::int32_t)>& at) {
  Table table;
  table.addColumn("", Table::Align::Left);
  for (const std::string& name : names) table.addColumn(name);
  for (std::size_t i = 0; i < names.size(); ++i) {
    std::vector<std::string> cells{names[i]};
    for (std::size_t j = 0; j < names.size(); ++j)
      cells.push_back(correlationCell(at(static_cast<std::int32_t>(i), static_cast<std::int32_t>(j))));
    table.addRow(std::move(cells));
  }
  out.add(Caption{Caption::Of::Table, "Correlations"});
  out.add(std::move(table));
}

void addPairs(Document& out, const std::vector<std::string>& names,
              const std::function<double(std::int32_t, std::int32_t)>& at) {
  struct Pair {
    std::size_t i, j;
    double r;
  };
  std::vector<Pair> pairs;
  for (std::size_t i = 0; i < names.size(); ++i)
    for (std::size_t j = i + 1; j < names.size(); ++j) {
      const double r = at(static_cast<std::int32_t>(i), static_cast<std::int32_t>(j));
      if (std::abs(r) > 0.0) pairs.push_back({i, j, r});
    }
  std::stable_sort(pairs.begin(), pairs.end(),
                   [](const Pair& a, const Pair& b) { return std::abs(a.r) > std::abs(b.r); });
  Table table;
  table.addColumn("strongest pairs", Table::Align::Left);
  table.addColumn("", Table::Align::Left);
  table.addColumn("correlation");
  for (std::size_t k = 0; k < std::min(pairs.size(), kPairsShown); ++k)
    table.addRow({names[pairs[k].i], names[pairs[k].j], correlationCell(pairs[k].r)});
  out.add(Caption{Caption::Of::Table, "Correlations of the strongest pairs"});
  out.add(std::move(table));
  if (pairs.size() > kPairsShown) out.add(Remark{fmt::format("and {} weaker pairs", pairs.size() - kPairsShown)});
}

}  // namespace

void reportCorrelations(Document& out, const std::vector<std::string>& names,
                        const std::function<double(std::int32_t, std::int32_t)>& at) {
  (names.size() <= kWidestMatrix ? addMatrix : addPairs)(out, names, at);
}

}  // namespace tarvex
