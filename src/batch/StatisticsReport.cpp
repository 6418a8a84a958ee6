#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "batch/Reports.h"
#include "batch/TextTable.h"
#include "postproc/CellFormat.h"
#include "postproc/MeasureSlots.h"
#include "postproc/RegressionStats.h"
#include "postproc/UaStats.h"

namespace tarvex {

namespace {

// A measure of a record, or what stands in its place.
std::string measureText(const SensitivityStats& statistics, const IndexRecord& record, std::int32_t variable,
                        std::size_t slot) {
  const std::string_view instead = kindCell(record.kind);
  if (!instead.empty()) return std::string(instead);
  return measureCell(measureValue(statistics, record, variable, slot));
}

// A measure's rank among the factors, with a star when it is significant.
std::string rankText(const RegressionStats& statistics, const IndexRecord& record, std::int32_t variable,
                     std::size_t measure) {
  const double rank = measureValue(statistics, record, variable, RegressionStats::kRankSlots + measure);
  const double flag = measureValue(statistics, record, variable, RegressionStats::kFlagSlots + measure);
  return cell(rank) + (flag == 1.0 ? "*" : "");
}

void printRegression(std::ostream& out, const RegressionStats& statistics, std::int32_t variable) {
  double raw = 0.0, ranks = 0.0, rawAdjusted = 0.0, ranksAdjusted = 0.0;
  statistics.determination(variable, raw, ranks);
  statistics.determinationAdjusted(variable, rawAdjusted, ranksAdjusted);
  out << fmt::format("R squared on raw data {}, adjusted {}; on ranks {}, adjusted {}\n", cell(raw), cell(rawAdjusted),
                     cell(ranks), cell(ranksAdjusted));
  TextTable table;
  table.addColumn("factor", TextTable::Align::Left);
  for (std::int32_t m = 0; m < RegressionStats::kMeasures; ++m) {
    table.addColumn(std::string(RegressionStats::measureName(m)));
    table.addColumn("", TextTable::Align::Left);
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
  table.print(out);
  out << fmt::format("  Behind each measure its rank; * significant at {}\n", cell(statistics.alpha));
}

double largestOf(const SensitivityStats& statistics, std::int32_t variable, std::size_t slot) {
  double largest = 0.0;
  for (const IndexRecord& record : statistics.records)
    largest = std::max(largest, std::abs(measureValue(statistics, record, variable, slot)));
  return largest;
}

// The slots of the first record; of FAST without the total order, which its classic test leaves at 0.
std::vector<MeasureSlot> columnsOf(const SensitivityStats& statistics, std::int32_t variable) {
  std::vector<MeasureSlot> columns = measureSlots(statistics, statistics.records.front());
  if (statistics.typeId() == SensitivityStats::kFast && largestOf(statistics, variable, columns.back().slot) == 0.0)
    columns.pop_back();
  return columns;
}

// A factor without any effect on the grid may still matter: the design only ever jumps by half of it.
void printIdleFactors(std::ostream& out, const SensitivityStats& statistics, std::int32_t variable) {
  constexpr double kNoise = 1e-4;  // of the largest effect: what six digits in equations and files make of none
  const double largest = largestOf(statistics, variable, 0);
  for (const IndexRecord& record : statistics.records)
    if (record.kind == FactorKind::Uncertain && measureValue(statistics, record, variable, 0) <= kNoise * largest)
      out << "  " << record.name
          << " has no effect in this design. Every step jumps by half of the levels: where that is a period of the "
             "model, an effect of any size goes unseen.\n";
}

// A record that lacks a column's slot leaves its cell empty.
void printSlots(std::ostream& out, const SensitivityStats& statistics, std::int32_t variable) {
  const std::vector<MeasureSlot> columns = columnsOf(statistics, variable);
  TextTable table;
  table.addColumn("factor", TextTable::Align::Left);
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
  table.print(out);
  if (statistics.typeId() == SensitivityStats::kMorris) printIdleFactors(out, statistics, variable);
}

}  // namespace

void reportUncertainty(std::ostream& out, const UaStats& statistics) {
  if (statistics.variableCount() == 0) {
    out << "Uncertainty statistics: not computed\n";
    return;
  }
  out << fmt::format("Uncertainty statistics of {} runs, bounds on the mean at {}\n", statistics.sampleSize(),
                     cell(statistics.tchebyConfidence));
  TextTable table;
  table.addColumn("variable", TextTable::Align::Left);
  for (const char* heading :
       {"mean", "variance", "std. dev.", "skewness", "kurtosis", "minimum", "maximum", "Tchebycheff", "t-test"})
    table.addColumn(heading);
  for (std::int32_t v = 0; v < statistics.variableCount(); ++v) {
    const double s = statistics.std(v);
    table.addRow({*statistics.name(v), cell(statistics.mean(v)), cell(s * s), cell(s), cell(statistics.skewness(v)),
                  cell(statistics.kurtosis(v)), cell(statistics.minimum(v)), cell(statistics.maximum(v)),
                  cell(statistics.tchebyBound(v)), cell(statistics.tTestBound(v))});
  }
  table.print(out);
}

void reportHistograms(std::ostream& out, const UaStats& statistics, HistogramScale scale) {
  constexpr double kWidestBar = 40.0;
  for (std::int32_t v = 0; v < statistics.variableCount(); ++v) {
    const Histogram* bins = scale == kLinearScale ? statistics.linearHistogram(v) : statistics.logHistogram(v);
    double highest = 0.0;
    for (const HistogramEntry& bin : *bins) highest = std::max(highest, bin.count);
    out << '\n' << *statistics.name(v) << (scale == kLinearScale ? "" : ", natural logarithm") << '\n';
    if (highest == 0.0) {
      out << "  no histogram\n";
      continue;
    }
    TextTable table;
    table.addColumn("from");
    table.addColumn("runs");
    table.addColumn("", TextTable::Align::Left);
    for (const HistogramEntry& bin : *bins)
      if (bin.count > 0.0)
        table.addRow({cell(bin.left), cell(bin.count),
                      std::string(static_cast<std::size_t>(std::lround(bin.count / highest * kWidestBar)), '#')});
    table.print(out);
  }
}

void reportMeasures(std::ostream& out, const SensitivityStats& statistics, const std::vector<std::string>& variables) {
  if (!statistics.computed || statistics.records.empty()) {
    out << "Sensitivity measures: not computed\n";
    return;
  }
  for (std::int32_t v = 0; v < statistics.variableCount; ++v) {
    const auto index = static_cast<std::size_t>(v);
    out << (v == 0 ? "" : "\n") << "Sensitivity of "
        << (index < variables.size() ? variables[index] : std::to_string(v + 1)) << '\n';
    if (const auto* regression = dynamic_cast<const RegressionStats*>(&statistics))
      printRegression(out, *regression, v);
    else
      printSlots(out, statistics, v);
  }
}

}  // namespace tarvex
