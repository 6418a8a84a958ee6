#include "postproc/SavedTables.h"

#include <cmath>
#include <cstddef>
#include <numeric>
#include <string_view>

#include "base/TextWriter.h"
#include "postproc/CellFormat.h"
#include "postproc/FastStats.h"
#include "postproc/ImportanceStats.h"
#include "postproc/MorrisStats.h"
#include "postproc/RegressionStats.h"
#include "postproc/SobolStats.h"
#include "postproc/UaCurves.h"

namespace tarvex {

namespace {

using Row = std::vector<std::string>;

void writeRow(TextWriter& out, const Row& cells) {
  for (const std::string& cell : cells) out << savedCell(cell) << '\t';
  out << '\n';
}

std::string recordCell(const IndexRecord& record, double value) {
  return record.kind == FactorKind::Uncertain ? measureCell(value) : std::string(kindCell(record.kind));
}

// The values of a slot, 0.0 where nothing is computed.
std::vector<double> slotOf(const SensitivityStats& stats, const TableSelection& selection, std::int32_t slot) {
  std::vector<double> values(stats.records.size(), 0.0);
  stats.slotValues(selection.variable, slot, values);
  return values;
}

const IndexRecord& recordAt(const SensitivityStats& stats, std::int32_t position) {
  return stats.records[static_cast<std::size_t>(position)];
}

// One column of values under its heading.
void writeSlot(TextWriter& out, const SensitivityStats& stats, const TableSelection& selection, std::int32_t slot,
               const char* heading) {
  const std::vector<double> values = slotOf(stats, selection, slot);
  writeRow(out, {selection.name, heading});
  for (const std::int32_t i : selection.records) {
    const IndexRecord& record = recordAt(stats, i);
    writeRow(out, {record.name, recordCell(record, values[static_cast<std::size_t>(i)])});
  }
}

void writeRegressionSheet(TextWriter& out, const RegressionStats& stats, const TableSelection& selection,
                          std::int32_t measure, std::int32_t slot) {
  const std::vector<double> values = slotOf(stats, selection, slot);
  const std::vector<double> flags = slotOf(stats, selection, RegressionStats::kFlagSlots + measure);
  writeRow(out, {selection.name, std::string(RegressionStats::measureName(measure))});
  for (const std::int32_t i : selection.records) {
    const IndexRecord& record = recordAt(stats, i);
    const bool marked = record.kind == FactorKind::Uncertain && flags[static_cast<std::size_t>(i)] != 1.0;
    out << savedCell(record.name) << '\t' << savedCell(recordCell(record, values[static_cast<std::size_t>(i)]))
        << (marked ? "*\t\n" : "\t\n");
  }
}

}  // namespace

TableSelection wholeTable(const SensitivityStats& stats, std::int32_t variable, const std::string& name) {
  TableSelection selection{variable, name, std::vector<std::int32_t>(stats.records.size())};
  std::iota(selection.records.begin(), selection.records.end(), 0);
  return selection;
}

void writeUncertaintyTable(TextWriter& out, const UaStats& stats, std::int32_t variable, HistogramScale scale) {
  const std::string* name = stats.name(variable);
  out << "Uncertainty analysis for var " << (name ? *name : std::string()) << "\n\n";
  const double deviation = stats.std(variable);
  out << "      mean: " << shortNumber(stats.mean(variable)) << '\n';
  out << "       std: " << shortNumber(deviation) << '\n';
  out << "square std: " << shortNumber(deviation * deviation) << '\n';
  out << "     Tcheb: " << shortNumber(stats.tchebyBound(variable)) << '\n';
  out << "     TTest: " << shortNumber(stats.tTestBound(variable)) << "\n\n";

  const UaCurves curves = makeUaCurves(stats, variable, scale);
  writeRow(out, {"Value", "Count", "Density", "Cumulative", "Complement"});
  for (std::size_t i = 0; i < curves.x.size(); ++i)
    writeRow(out, {statisticCell(curves.x[i]), std::to_string(std::lround(curves.density[i])),
                   statisticCell(curves.density[i]), statisticCell(curves.cumulative[i]),
                   statisticCell(curves.complement[i])});
}

void writeRegressionTable(TextWriter& out, const RegressionStats& stats, const TableSelection& selection,
                          std::int32_t measure) {
  double raw = 0.0, ranks = 0.0, rawAdjusted = 0.0, ranksAdjusted = 0.0;
  stats.determination(selection.variable, raw, ranks);
  stats.determinationAdjusted(selection.variable, rawAdjusted, ranksAdjusted);
  out << "Value of the " << RegressionStats::measureName(measure) << "s vs. selected factors";
  out << "\nCoefficients of model determination:\n";
  out << "    on row data: " << savedCell(measureCell(raw)) << '\t';
  out << "    on ranks: " << savedCell(measureCell(ranks)) << '\n';
  out << "on row data adj: " << savedCell(measureCell(rawAdjusted)) << '\t';
  out << "on ranks adj: " << savedCell(measureCell(ranksAdjusted)) << "\n\n";
  out << "Sensitivity indexes\n";
  writeRegressionSheet(out, stats, selection, measure, measure);
  out << "\nRanks\n";
  writeRegressionSheet(out, stats, selection, measure, RegressionStats::kRankSlots + measure);
}

void writeFastTable(TextWriter& out, const FastStats& stats, const TableSelection& selection, bool withTotal) {
  out << "Fast first order indexes\n";
  writeSlot(out, stats, selection, FastStats::kFirstOrder, "First Order");
  if (!withTotal) return;
  out << "\nFast total order Indexes\n";
  writeSlot(out, stats, selection, FastStats::kTotalOrder, "Total Order ");
}

void writeMorrisTable(TextWriter& out, const MorrisStats& stats, const TableSelection& selection) {
  const std::vector<double> means = slotOf(stats, selection, MorrisStats::kMean);
  const std::vector<double> spreads = slotOf(stats, selection, MorrisStats::kSigma);
  out << "Morris indexes\n";
  writeRow(out, {selection.name, "Morris Index", "Sigma"});
  for (const std::int32_t i : selection.records) {
    const IndexRecord& record = recordAt(stats, i);
    const auto at = static_cast<std::size_t>(i);
    writeRow(out, {record.name, recordCell(record, means[at]), recordCell(record, spreads[at])});
  }
}

void writeImportanceTable(TextWriter& out, const ImportanceStats& stats, const TableSelection& selection) {
  out << "Importance indicators\n";
  writeSlot(out, stats, selection, 0, "Importance");
}

void writeSobolTable(TextWriter& out, const SobolStats& stats, const TableSelection& selection) {
  if (stats.slotMode == SobolStats::kFirstAndTotal) {
    out << "Sobol First order indexes\n";
    writeSlot(out, stats, selection, SobolStats::kIndex, "First Order");
    out << "\nSobol total order Indexes\n";
    writeSlot(out, stats, selection, SobolStats::kTotal, "Total Order ");
    return;
  }
  out << "Sobol indexes\n";
  writeSlot(out, stats, selection, SobolStats::kIndex, "Index");
  for (const std::int32_t i : selection.records)
    writeRow(out, {recordAt(stats, i).name + "-Closed", measureCell(stats.closedIndex(i, selection.variable))});
  const std::vector<double> totals = slotOf(stats, selection, SobolStats::kTotal);
  for (const std::int32_t i : selection.records)
    if (recordAt(stats, i).groupNames.size() == 1)
      writeRow(out, {"Total " + recordAt(stats, i).name, measureCell(totals[static_cast<std::size_t>(i)])});
}

}  // namespace tarvex
