#include <fmt/format.h>

#include "factors/FactorList.h"
#include "factors/IntervalDistribution.h"
#include "factors/Relation.h"
#include "factors/TruncatedDistribution.h"
#include "report/CorrelationReport.h"
#include "report/Document.h"
#include "report/Reports.h"

namespace tarvex {

namespace {

constexpr std::size_t kIntervalsShown = 4;

std::string intervalsText(const IntervalDistribution& factor) {
  const bool points = factor.typeName == "Discrete";
  std::string text;
  for (std::size_t i = 0; i < factor.count() && i < kIntervalsShown; ++i) {
    const Interval& interval = *factor.intervalAt(i);
    text += i == 0 ? "" : ", ";
    text += points ? cell(interval.left) : fmt::format("[{}, {}]", cell(interval.left), cell(interval.right));
    if (factor.count() > 1) text += ": " + cell(interval.weight);
  }
  if (factor.count() > kIntervalsShown) text += fmt::format(" and {} more", factor.count() - kIntervalsShown);
  return text;
}

std::string parametersText(const Factor& factor) {
  if (const auto* relation = dynamic_cast<const Relation*>(&factor))
    return relation->refusedExpression().empty() ? "= " + relation->expression()
                                                 : "= " + relation->refusedExpression() + " (refused: 0)";
  if (const auto* list = dynamic_cast<const IntervalDistribution*>(&factor)) return intervalsText(*list);
  std::string text;
  for (const Parameter& parameter : factor.parameters()) {
    if (!text.empty()) text += ", ";
    text += fmt::format("{} {}", parameter.name, cell(parameter.value));
  }
  return text;
}

std::vector<std::string> correlatableNames(const FactorList& factors) {
  std::vector<std::string> names;
  for (std::int32_t i = 0; i < factors.factorCount(); ++i)
    if (factors.isCorrelatable(i) == 1) names.push_back(factors.factor(i).name);
  return names;
}

void reportTree(Document& out, const FactorList& factors) {
  out.add(Heading{"Dependence tree", 2});
  Table table;
  table.addColumn("factor", Table::Align::Left);
  table.addColumn("depends on", Table::Align::Left);
  table.addColumn("correlation");
  for (std::int32_t i = 0; i < factors.factorCount(); ++i) {
    const CorrelationNode& node = factors.node(i);
    if (node.parent >= 0)
      table.addRow({factors.factor(i).name, factors.factor(node.parent).name, cell(node.correlation)});
  }
  out.add(Caption{Caption::Of::Table, "Links of the dependence tree"});
  out.add(std::move(table));
}

void reportCorrelation(Document& out, const FactorList& factors) {
  switch (factors.correlationMode) {
    case kDependenceTree:
      reportTree(out, factors);
      break;
    case kImanConover:
      out.add(Heading{"Rank correlation", 2});
      reportCorrelations(out, correlatableNames(factors),
                         [&factors](std::int32_t i, std::int32_t j) { return factors.matrixAt(i, j); });
      break;
    case kSteinSample:
      out.add(Paragraph{fmt::format("Correlation of the Stein sample: {} rows of {} columns{}{}",
                                    factors.steinInfo.rows(), factors.steinInfo.columns(),
                                    factors.steinFileName.empty() ? "" : ", ", factors.steinFileName)});
      break;
    default:
      out.add(Paragraph{"No correlation"});
  }
}

}  // namespace

void reportFactors(Document& out, const FactorList& factors) {
  out.add(Paragraph{fmt::format("{}, {} with a distribution; default truncations {} and {}",
                                counted(factors.factorCount(), "factor"), factors.correlatableCount(),
                                cell(TruncatedDistribution::defaultLeftTruncation()),
                                cell(TruncatedDistribution::defaultRightTruncation()))});
  Table table;
  table.addColumn("#");
  table.addColumn("name", Table::Align::Left);
  table.addColumn("type", Table::Align::Left);
  table.addColumn("mean");
  table.addColumn("std. dev.");
  table.addColumn("parameters", Table::Align::Left);
  table.addColumn("note", Table::Align::Left);
  for (std::int32_t i = 0; i < factors.factorCount(); ++i) {
    const Factor& factor = factors.factor(i);
    const auto* distribution = dynamic_cast<const Distribution*>(&factor);
    table.addRow({std::to_string(i + 1), factor.name, factor.typeName,
                  distribution != nullptr ? cell(distribution->mean()) : "",
                  distribution != nullptr ? cell(distribution->stdDev()) : "", parametersText(factor), factor.note});
  }
  out.add(Caption{Caption::Of::Table, "The factors"});
  out.add(std::move(table));
  reportCorrelation(out, factors);
}

}  // namespace tarvex
