#include "postproc/SavedTables.h"

#include <cmath>
#include <cstddef>
#include <numeric>
#include <string_view>

#include "base/TextWriter.h"
#include "postproc/CellFormat.h"
#include "postproc/FastStats.h"
#include "postproc/ImportanceStats.h"
#include "postproc/MeasureSlots.h"
#include "postproc/MorrisStats.h"
#include "postproc/RegressionStats.h"
#include "postproc/SobolStats.h"
#include "postproc/UaCurves.h"
#include "sampling/FastSampler.h"
#include "sampling/PrepConfiguration.h"

namespace tarvex {

namespace {

using Row = std::vector<std::string>;

void writeRow(TextWriter& out, const Row& cells) {
  for (const std::string& cell : cells) out << savedCell(cell) << '\t';
  out << '\n';
}

const IndexRecord& recordAt(const SensitivityStats& stats, std::int32_t position) {
  return stats.records[static_cast<std::size_t>(position)];
}

bool isComputed(const SensitivityStats& stats, const TableSelection& selection, std::int32_t slot) {
  return stats.notComputedReason(selection.variable, slot).empty();
}

// A measure, or what stands in its place.
std::string recordCell(const SensitivityStats& stats, const IndexRecord& record, const TableSelection& selection,
                       std::int32_t slot) {
  if (record.kind != FactorKind::Uncertain) return std::string(kindCell(record.kind));
  if (!isComputed(stats, selection, slot)) return std::string(kNotComputed);
  const auto value = measureValue(stats, record, selection.variable, static_cast<std::size_t>(slot));
  return value ? measureCell(*value) : "";
}

// One column of values under its heading.
void writeSlot(TextWriter& out, const SensitivityStats& stats, const TableSelection& selection, std::int32_t slot,
               const char* heading) {
  writeRow(out, {selection.name, heading});
  for (const std::int32_t i : selection.records) {
    const IndexRecord& record = recordAt(stats, i);
    writeRow(out, {record.name, recordCell(stats, record, selection, slot)});
  }
}

// Kept: the asterisk stands behind what is not significant, and never where there is no test.
bool hasAsterisk(const RegressionStats& stats, const IndexRecord& record, const TableSelection& selection,
                 std::int32_t measure) {
  const auto slot = static_cast<std::size_t>(RegressionStats::kFlagSlots + measure);
  const auto flag = measureValue(stats, record, selection.variable, slot);
  return flag && *flag != 1.0;
}

void writeRegressionSheet(TextWriter& out, const RegressionStats& stats, const TableSelection& selection,
                          std::int32_t measure, std::int32_t slot) {
  writeRow(out, {selection.name, std::string(RegressionStats::measureName(measure))});
  for (const std::int32_t i : selection.records) {
    const IndexRecord& record = recordAt(stats, i);
    out << savedCell(record.name) << '\t' << savedCell(recordCell(stats, record, selection, slot))
        << (hasAsterisk(stats, record, selection, measure) ? "*\t\n" : "\t\n");
  }
}

}  // namespace

TableSelection wholeTable(const SensitivityStats& stats, std::int32_t variable, const std::string& name) {
  TableSelection selection{variable, name, std::vector<std::int32_t>(stats.records.size())};
  std::iota(selection.records.begin(), selection.records.end(), 0);
  return selection;
}

std::vector<std::array<std::string, 5>> curvePoints(const UaStats& stats, std::int32_t variable, HistogramScale scale) {
  const UaCurves curves = makeUaCurves(stats, variable, scale);
  std::vector<std::array<std::string, 5>> points;
  for (std::size_t i = 0; i < curves.x.size(); ++i)
    points.push_back({statisticCell(curves.x[i]), std::to_string(std::lround(curves.density[i])),
                      statisticCell(curves.density[i]), statisticCell(curves.cumulative[i]),
                      statisticCell(curves.complement[i])});
  return points;
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

  writeRow(out, Row(kPointHeadings.begin(), kPointHeadings.end()));
  for (const auto& point : curvePoints(stats, variable, scale)) writeRow(out, Row(point.begin(), point.end()));
}

void writeRegressionTable(TextWriter& out, const RegressionStats& stats, const TableSelection& selection,
                          std::int32_t measure) {
  double raw = 0.0, ranks = 0.0, rawAdjusted = 0.0, ranksAdjusted = 0.0;
  if (!stats.determination(selection.variable, raw, ranks) ||
      !stats.determinationAdjusted(selection.variable, rawAdjusted, ranksAdjusted))
    return;  // there is no such variable
  const auto coefficient = [&](double value, RegressionStats::Measure of) {
    return savedCell(isComputed(stats, selection, of) ? measureCell(value) : std::string(kNotComputed));
  };
  out << "Value of the " << RegressionStats::measureName(measure) << "s vs. selected factors";
  out << "\nCoefficients of model determination:\n";
  out << "    on row data: " << coefficient(raw, RegressionStats::kPear) << '\t';
  out << "    on ranks: " << coefficient(ranks, RegressionStats::kSpea) << '\n';
  out << "on row data adj: " << coefficient(rawAdjusted, RegressionStats::kPear) << '\t';
  out << "on ranks adj: " << coefficient(ranksAdjusted, RegressionStats::kSpea) << "\n\n";
  out << "Sensitivity indexes\n";
  writeRegressionSheet(out, stats, selection, measure, measure);
  out << "\nRanks\n";
  writeRegressionSheet(out, stats, selection, measure, RegressionStats::kRankSlots + measure);
  if (const std::string reason = stats.notComputedReason(selection.variable, measure); !reason.empty())
    out << '\n' << kNotComputed << ": " << reason << '\n';
}

void writeFastTable(TextWriter& out, const FastStats& stats, const TableSelection& selection, bool withTotal) {
  out << "Fast first order indexes\n";
  writeSlot(out, stats, selection, FastStats::kFirstOrder, "First Order");
  if (!withTotal) return;
  out << "\nFast total order Indexes\n";
  writeSlot(out, stats, selection, FastStats::kTotalOrder, "Total Order ");
}

void writeMorrisTable(TextWriter& out, const MorrisStats& stats, const TableSelection& selection) {
  out << "Morris indexes\n";
  writeRow(out, {selection.name, "Morris Index", "Sigma"});
  for (const std::int32_t i : selection.records) {
    const IndexRecord& record = recordAt(stats, i);
    writeRow(out, {record.name, recordCell(stats, record, selection, MorrisStats::kMean),
                   recordCell(stats, record, selection, MorrisStats::kSigma)});
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
  for (const std::int32_t i : selection.records)
    if (recordAt(stats, i).groupNames.size() == 1)
      writeRow(out, {"Total " + recordAt(stats, i).name,
                     recordCell(stats, recordAt(stats, i), selection, SobolStats::kTotal)});
}

std::vector<SavedTable> savedTables(const SensitivityStats& stats, const PrepConfiguration& prep,
                                    const TableSelection& selection) {
  std::vector<SavedTable> tables;
  if (const auto* regression = dynamic_cast<const RegressionStats*>(&stats)) {
    for (std::int32_t measure = 0; measure < RegressionStats::kMeasures; ++measure)
      tables.push_back({std::string(RegressionStats::measureName(measure)),
                        [=](TextWriter& out) { writeRegressionTable(out, *regression, selection, measure); }});
    return tables;
  }
  const auto* design = dynamic_cast<const FastSampler*>(prep.sampler.get());
  const bool withTotal = design != nullptr && design->analysisMode() != FastSampler::kClassic;
  tables.push_back({"sensitivity", [&stats, selection, withTotal](TextWriter& out) {
                      if (const auto* fast = dynamic_cast<const FastStats*>(&stats))
                        writeFastTable(out, *fast, selection, withTotal);
                      else if (const auto* morris = dynamic_cast<const MorrisStats*>(&stats))
                        writeMorrisTable(out, *morris, selection);
                      else if (const auto* importance = dynamic_cast<const ImportanceStats*>(&stats))
                        writeImportanceTable(out, *importance, selection);
                      else
                        writeSobolTable(out, static_cast<const SobolStats&>(stats), selection);
                    }});
  return tables;
}

}  // namespace tarvex
