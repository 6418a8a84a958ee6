#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <map>

#include "postproc/CellFormat.h"
#include "postproc/MeasureSlots.h"
#include "postproc/Quantiles.h"
#include "postproc/RegressionStats.h"
#include "postproc/UaStats.h"
#include "report/Document.h"
#include "report/Reports.h"

namespace tarvex {

namespace {

// A measure of a record, or what stands in its place.
std::string measureText(const SensitivityStats& statistics, const IndexRecord& record, std::int32_t variable,
                        std::size_t slot) {
  const std::string_view instead = kindCell(record.kind);
  if (!instead.empty()) return std::string(instead);
  const auto value = measureValue(statistics, record, variable, slot);
  return value ? measureCell(*value) : std::string(kNotComputed);
}

// A measure's rank among the factors, with a star when it lies significantly above 0.
std::string rankText(const RegressionStats& statistics, const IndexRecord& record, std::int32_t variable,
                     std::size_t measure) {
  const auto rank = measureValue(statistics, record, variable, RegressionStats::kRankSlots + measure);
  const auto flag = measureValue(statistics, record, variable, RegressionStats::kFlagSlots + measure);
  return (rank ? cell(*rank) : "") + (flag && *flag == 1.0 ? "*" : "");
}

// Which measures were not computed and why, a remark for each reason.
void addReasons(Document& out, const RegressionStats& statistics, std::int32_t variable) {
  std::map<std::string, std::string> names;  // by reason
  for (std::int32_t m = 0; m < RegressionStats::kMeasures; ++m) {
    const std::string reason = statistics.notComputedReason(variable, m);
    if (reason.empty()) continue;
    std::string& list = names[reason];
    list += (list.empty() ? "" : ", ") + std::string(RegressionStats::measureName(m));
  }
  for (const auto& [reason, list] : names) out.add(Remark{fmt::format("{} {}: {}", list, kNotComputed, reason)});
}

void addRegression(Document& out, const RegressionStats& statistics, std::int32_t variable, const std::string& name) {
  double raw = 0.0, ranks = 0.0, rawAdjusted = 0.0, ranksAdjusted = 0.0;
  if (!statistics.determination(variable, raw, ranks) ||
      !statistics.determinationAdjusted(variable, rawAdjusted, ranksAdjusted))
    return;  // there is no such variable
  const auto text = [&](double value, RegressionStats::Measure of) {
    return statistics.notComputedReason(variable, of).empty() ? cell(value) : std::string(kNotComputed);
  };
  out.add(Paragraph{fmt::format("R squared on raw data {}, adjusted {}; on ranks {}, adjusted {}",
                                text(raw, RegressionStats::kPear), text(rawAdjusted, RegressionStats::kPear),
                                text(ranks, RegressionStats::kSpea), text(ranksAdjusted, RegressionStats::kSpea))});
  Table table;
  table.addColumn("factor", Table::Align::Left);
  for (std::int32_t m = 0; m < RegressionStats::kMeasures; ++m) {
    table.addColumn(std::string(RegressionStats::measureName(m)));
    table.addColumn("", Table::Align::Left);
  }
  for (const IndexRecord& record : statistics.records) {
    const bool uncertain = record.kind == FactorKind::Uncertain;
    std::vector<std::string> cells{record.name};
    for (std::size_t m = 0; m < RegressionStats::kMeasures && (uncertain || m == 0); ++m) {
      cells.push_back(measureText(statistics, record, variable, m));
      cells.push_back(uncertain ? rankText(statistics, record, variable, m) : "");
    }
    table.addRow(std::move(cells));
  }
  out.add(Caption{Caption::Of::Table, "Measures of " + name});
  out.add(std::move(table));
  out.add(Remark{
      fmt::format("Behind each measure its rank; * significantly above 0 at {}; PCC, PRCC and Smirnov have no test",
                  cell(statistics.alpha))});
  addReasons(out, statistics, variable);
}

double largestOf(const SensitivityStats& statistics, std::int32_t variable, std::size_t slot) {
  double largest = 0.0;
  for (const IndexRecord& record : statistics.records)
    largest = std::max(largest, std::abs(measureValue(statistics, record, variable, slot).value_or(0.0)));
  return largest;
}

// The slots of the first record that were computed.
std::vector<MeasureSlot> columnsOf(const SensitivityStats& statistics, std::int32_t variable) {
  std::vector<MeasureSlot> columns = measureSlots(statistics, statistics.records.front());
  std::erase_if(columns, [&](const MeasureSlot& column) {
    return !statistics.notComputedReason(variable, static_cast<std::int32_t>(column.slot)).empty();
  });
  return columns;
}

// A factor without any effect on the grid may still matter: the design only ever jumps by half of it.
void addIdleFactors(Document& out, const SensitivityStats& statistics, std::int32_t variable) {
  constexpr double kNoise = 1e-4;  // of the largest effect: what six digits in equations and files make of none
  const double largest = largestOf(statistics, variable, 0);
  for (const IndexRecord& record : statistics.records)
    if (const auto effect = measureValue(statistics, record, variable, 0); effect && *effect <= kNoise * largest)
      out.add(Remark{record.name +
                     " has no effect in this design. Every step jumps by half of the levels: where that is a period of "
                     "the model, an effect of any size goes unseen."});
}

// A record that lacks a column's slot leaves its cell empty.
void addSlots(Document& out, const SensitivityStats& statistics, std::int32_t variable, const std::string& name) {
  const std::vector<MeasureSlot> columns = columnsOf(statistics, variable);
  Table table;
  table.addColumn("factor", Table::Align::Left);
  for (const MeasureSlot& column : columns) table.addColumn(column.name);
  for (const IndexRecord& record : statistics.records) {
    const std::vector<MeasureSlot> slots = measureSlots(statistics, record);
    std::vector<std::string> cells{record.name};
    for (const MeasureSlot& column : columns) {
      const auto slot =
          std::find_if(slots.begin(), slots.end(), [&column](const MeasureSlot& s) { return s.name == column.name; });
      cells.push_back(slot == slots.end() ? "" : measureText(statistics, record, variable, slot->slot));
      if (record.kind != FactorKind::Uncertain) break;
    }
    table.addRow(std::move(cells));
  }
  out.add(Caption{Caption::Of::Table, "Measures of " + name});
  out.add(std::move(table));
  if (statistics.typeId() == SensitivityStats::kMorris) addIdleFactors(out, statistics, variable);
}

}  // namespace

void reportUncertainty(Document& out, const UaStats& statistics) {
  if (statistics.variableCount() == 0) {
    out.add(Paragraph{"Uncertainty statistics: not computed"});
    return;
  }
  out.add(Heading{fmt::format("Uncertainty statistics of {} runs, bounds on the mean at {}", statistics.sampleSize(),
                              cell(statistics.tchebyConfidence)),
                  2});
  Table table;
  table.addColumn("variable", Table::Align::Left);
  for (const char* heading :
       {"mean", "variance", "std. dev.", "skewness", "kurtosis", "minimum", "maximum", "Tchebycheff", "t-test"})
    table.addColumn(heading);
  // A file may lack a statistic, and the t table a level.
  const auto number = [](double value) { return value == UaStats::kUnavailable ? "" : cell(value); };
  for (std::int32_t v = 0; v < statistics.variableCount(); ++v) {
    const double s = statistics.std(v);
    const double tTest = statistics.tTestBound(v);
    table.addRow({*statistics.name(v), number(statistics.mean(v)), s == UaStats::kUnavailable ? "" : cell(s * s),
                  number(s), number(statistics.skewness(v)), number(statistics.kurtosis(v)),
                  number(statistics.minimum(v)), number(statistics.maximum(v)), number(statistics.tchebyBound(v)),
                  tTest < 0.0 ? "" : number(tTest)});
  }
  out.add(Caption{Caption::Of::Table, "Statistics of the variables"});
  out.add(std::move(table));
}

void reportQuantiles(Document& out, const QuantileTable& quantiles, const std::vector<std::string>& variables,
                     std::int32_t methodId) {
  if (quantiles.variables.empty()) return;
  const QuantileRequest& request = quantiles.request;
  out.add(Heading{fmt::format("Quantiles, with intervals of {} confidence", cell(request.confidence)), 2});
  Table table;
  table.addColumn("variable", Table::Align::Left);
  table.addColumn("of", Table::Align::Left);
  for (const char* heading : {"value", "from", "to"}) table.addColumn(heading);
  std::int64_t missing = 0;
  for (std::size_t v = 0; v < quantiles.variables.size(); ++v) {
    const VariableQuantiles& found = quantiles.variables[v];
    const auto add = [&](const std::string& what, const Estimate& estimate) {
      const auto end = [](const std::optional<double>& value) { return value ? cell(*value) : "too few runs"; };
      table.addRow({variables[v], what, cell(estimate.value), end(estimate.lower), end(estimate.upper)});
    };
    for (std::size_t i = 0; i < request.shares.size(); ++i) add(percentText(request.shares[i]), found.quantiles[i]);
    for (std::size_t i = 0; i < request.thresholds.size(); ++i)
      add("P(above " + cell(request.thresholds[i]) + ")", found.exceedances[i]);
    missing = std::max(missing, found.missing);
  }
  out.add(Caption{Caption::Of::Table, "Quantiles of the variables"});
  out.add(std::move(table));
  std::string remark = fmt::format("Intervals of quantiles: {}", kQuantileMethod);
  if (!request.thresholds.empty()) remark += fmt::format("; of probabilities: {}", kExceedanceMethod);
  if (missing > 0) remark += fmt::format(". Up to {} runs without a number are left out", missing);
  out.add(Remark{remark});
  if (const std::string caution = intervalCaution(methodId); !caution.empty()) out.add(Remark{caution});
}

void reportHistograms(Document& out, const UaStats& statistics, HistogramScale scale) {
  constexpr double kWidestBar = 40.0;
  for (std::int32_t v = 0; v < statistics.variableCount(); ++v) {
    const Histogram* bins = scale == kLinearScale ? statistics.linearHistogram(v) : statistics.logHistogram(v);
    double highest = 0.0;
    for (const HistogramEntry& bin : *bins) highest = std::max(highest, bin.count);
    out.add(Heading{*statistics.name(v) + (scale == kLinearScale ? "" : ", natural logarithm"), 2});
    if (highest == 0.0) {
      out.add(Remark{"no histogram"});
      continue;
    }
    Table table;
    table.addColumn("from");
    table.addColumn("runs");
    table.addColumn("", Table::Align::Left);
    for (const HistogramEntry& bin : *bins)
      if (bin.count > 0.0)
        table.addRow({cell(bin.left), cell(bin.count),
                      std::string(static_cast<std::size_t>(std::lround(bin.count / highest * kWidestBar)), '#')});
    out.add(std::move(table));
  }
}

void reportMeasures(Document& out, const SensitivityStats& statistics, const std::vector<std::string>& variables) {
  if (!statistics.computed || statistics.records.empty()) {
    out.add(Paragraph{"Sensitivity measures: not computed"});
    return;
  }
  for (std::int32_t v = 0; v < statistics.variableCount; ++v) {
    const auto index = static_cast<std::size_t>(v);
    const std::string name = index < variables.size() ? variables[index] : std::to_string(v + 1);
    out.add(Heading{"Sensitivity of " + name, 2});
    reportMeasuresOf(out, statistics, v, name);
  }
}

void reportMeasuresOf(Document& out, const SensitivityStats& statistics, std::int32_t variable,
                      const std::string& name) {
  if (const auto* regression = dynamic_cast<const RegressionStats*>(&statistics))
    addRegression(out, *regression, variable, name);
  else
    addSlots(out, statistics, variable, name);
}

}  // namespace tarvex
