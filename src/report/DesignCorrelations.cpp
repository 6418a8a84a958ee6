// The correlations of a sample as they were asked for and as they came out.

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <set>
#include <utility>

#include "correlation/rankCorrelation.h"
#include "factors/FactorList.h"
#include "plots/RunTable.h"
#include "plots/columnCorrelations.h"
#include "report/Document.h"
#include "report/StudySections.h"
#include "sampling/PrepConfiguration.h"

namespace tarvex {

namespace {

constexpr std::size_t kAskedShown = 40;

struct AskedPair {
  std::int32_t one = 0;  // factors, by their place in the list
  std::int32_t other = 0;
  double correlation = 0.0;
};

std::vector<std::int32_t> correlatable(const FactorList& factors) {
  std::vector<std::int32_t> places;
  for (std::int32_t i = 0; i < factors.factorCount(); ++i)
    if (factors.isCorrelatable(i) == 1) places.push_back(i);
  return places;
}

// What the rows of a Stein sample ask for: the correlation of their ranks.
std::vector<AskedPair> steinPairs(const FactorList& factors, const std::vector<std::int32_t>& places) {
  std::vector<std::vector<double>> columns(places.size());
  for (std::size_t i = 0; i < places.size(); ++i)
    if (places[i] >= factors.steinInfo.columns() || !factors.steinInfo.getColumn(places[i], columns[i])) return {};
  std::vector<AskedPair> pairs;
  for (std::size_t i = 0; i < places.size(); ++i)
    for (std::size_t j = i + 1; j < places.size(); ++j)
      pairs.push_back({places[i], places[j], rankCorrelation(columns[i], columns[j])});
  return pairs;
}

std::vector<AskedPair> askedPairs(const FactorList& factors) {
  std::vector<AskedPair> pairs;
  const std::vector<std::int32_t> places = correlatable(factors);
  const auto count = static_cast<std::int32_t>(places.size());
  switch (factors.correlationMode) {
    case kDependenceTree:
      for (std::int32_t i = 0; i < factors.factorCount(); ++i)
        if (factors.node(i).parent >= 0) pairs.push_back({i, factors.node(i).parent, factors.node(i).correlation});
      break;
    case kImanConover:
      for (std::int32_t i = 0; i < count; ++i)
        for (std::int32_t j = i + 1; j < count; ++j)
          pairs.push_back({places[static_cast<std::size_t>(i)], places[static_cast<std::size_t>(j)],
                           static_cast<double>(factors.matrixAt(i, j))});
      break;
    case kSteinSample:
      return steinPairs(factors, places);
    default:
      break;
  }
  std::erase_if(pairs, [](const AskedPair& pair) { return pair.correlation == 0.0; });
  return pairs;
}

std::string threeDecimals(double r) {
  return fmt::format("{:.3f}", r);
}

// The strongest correlation of two uncertain factors that nobody asked for.
void addUnasked(Document& out, const FactorList& factors, const CorrelationMatrix& matrix,
                const std::vector<AskedPair>& asked) {
  const std::vector<std::int32_t> places = correlatable(factors);
  std::set<std::pair<std::int32_t, std::int32_t>> askedFor;  // the place that comes first in front, as below
  for (const AskedPair& pair : asked) askedFor.insert(std::minmax(pair.one, pair.other));
  AskedPair strongest;
  for (std::size_t i = 0; i < places.size(); ++i)
    for (std::size_t j = i + 1; j < places.size(); ++j) {
      const double r = matrix.at(static_cast<std::size_t>(places[i]), static_cast<std::size_t>(places[j]));
      if (std::abs(r) > std::abs(strongest.correlation) && !askedFor.contains({places[i], places[j]}))
        strongest = {places[i], places[j], r};
    }
  if (strongest.one == strongest.other) return;
  out.add(Remark{fmt::format("The largest rank correlation of {} is that of {} and {}: {}",
                             asked.empty() ? "two factors, of which none was asked for," : "the other pairs",
                             factors.factor(strongest.one).name, factors.factor(strongest.other).name,
                             threeDecimals(strongest.correlation))});
}

}  // namespace

bool isCorrelated(const FactorList& factors) {
  return !askedPairs(factors).empty();
}

void addDesignCorrelations(Document& out, const PrepConfiguration& prep, const RunTable& columns) {
  CorrelationMatrix matrix;
  std::string message;
  if (columns.runs < 2 || std::ssize(columns.columns) < prep.factors.factorCount()) return;
  if (!correlateColumns(columns, {}, CorrelationKind::Ranks, matrix, message)) {
    out.add(Remark{message});
    return;
  }
  std::vector<AskedPair> asked = askedPairs(prep.factors);
  std::ranges::stable_sort(
      asked, [](const AskedPair& a, const AskedPair& b) { return std::abs(a.correlation) > std::abs(b.correlation); });
  out.add(Heading{"Correlation as asked for and as it came out", 2});
  if (!asked.empty()) {
    out.add(Caption{Caption::Of::Table, "Rank correlations, the strongest first"});
    Table table;
    table.addColumn("factor", Table::Align::Left);
    table.addColumn("and", Table::Align::Left);
    for (const char* heading : {"asked for", "came out", "difference"}) table.addColumn(heading);
    for (std::size_t k = 0; k < std::min(asked.size(), kAskedShown); ++k) {
      const double came = matrix.at(static_cast<std::size_t>(asked[k].one), static_cast<std::size_t>(asked[k].other));
      table.addRow({prep.factors.factor(asked[k].one).name, prep.factors.factor(asked[k].other).name,
                    threeDecimals(asked[k].correlation), threeDecimals(came),
                    threeDecimals(came - asked[k].correlation)});
    }
    out.add(std::move(table));
    if (asked.size() > kAskedShown) out.add(Remark{fmt::format("and {} more", asked.size() - kAskedShown)});
  }
  addUnasked(out, prep.factors, matrix, asked);
}

}  // namespace tarvex
