#include "postproc/RegressionStats.h"

#include <algorithm>
#include <utility>

#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "postproc/RankColumns.h"
#include "sampling/PrepConfiguration.h"

namespace tarvex {

namespace {

constexpr std::string_view kMeasureNames[RegressionStats::kMeasures] = {"PEAR", "SPEA", "PCC",    "PRCC",
                                                                        "SRC",  "SRRC", "Smirnov"};
// Shares of the progress, as long as the steps take for twenty factors.
constexpr double kCorrelated = 0.2;
constexpr double kRawDone = 0.22;
constexpr double kRanksDone = 0.85;
constexpr std::string_view kUnreadable = "The sample or the results can't be read.";

// Whether the table of factors and that of results are of one run; if not, why.
bool tablesFit(const PrepConfiguration& prep, const OutputTable& outputs, std::string& reason) {
  const sampValues& samples = prep.samples;
  if (samples.rows() != outputs.rows())
    reason = "The sample has " + std::to_string(samples.rows()) + " runs, the results have " +
             std::to_string(outputs.rows()) + ".";
  else if (samples.columns() != prep.factors.factorCount())
    reason = "The sample has " + std::to_string(samples.columns()) + " columns, the list has " +
             std::to_string(prep.factors.factorCount()) + " factors.";
  else if (samples.rows() == 0)
    reason = "There are no runs to analyse.";
  else
    return true;
  return false;
}

}  // namespace

std::string_view RegressionStats::measureName(std::int32_t measure) {
  return measure >= 0 && measure < kMeasures ? kMeasureNames[measure] : "ERROR";
}

void RegressionStats::clear() {
  SensitivityStats::clear();
  activeCount = 0;
  factorMoments.clear();
  rankMoments.clear();
  determinations_.clear();
  singular_ = {kNone, kNone};
}

bool RegressionStats::computeAll(const PrepConfiguration& prep, const OutputTable& outputs, const Progress& progress) {
  factorCount = prep.factors.factorCount();
  variableCount = outputs.columns();
  if (!tablesFit(prep, outputs, errorText)) return false;
  const std::int32_t runs = outputs.rows();
  const std::size_t columns = static_cast<std::size_t>(factorCount) + static_cast<std::size_t>(variableCount);
  makeFactorRecords(prep);
  factorMoments.assign(columns, {});
  rankMoments.assign(columns, {});
  determinations_.assign(static_cast<std::size_t>(variableCount), {});

  std::vector<double> inputs, results;
  const auto readRows = [&](std::int32_t row, std::int32_t count, double* values) {
    inputs.resize(static_cast<std::size_t>(count) * static_cast<std::size_t>(factorCount));
    results.resize(static_cast<std::size_t>(count) * static_cast<std::size_t>(variableCount));
    if (!prep.samples.getRows(row, count, inputs.data()) || !outputs.getRows(row, count, results.data())) return false;
    for (std::int32_t r = 0; r < count; ++r) {
      values = std::copy_n(inputs.data() + std::int64_t{r} * factorCount, factorCount, values);
      values = std::copy_n(results.data() + std::int64_t{r} * variableCount, variableCount, values);
    }
    return true;
  };
  ColumnCorrelations correlations;
  if (!correlations.compute(runs, columns, readRows, progress.part(0.0, kCorrelated))) return fail(kUnreadable);
  factorMoments = correlations.moments();
  markCollinear(correlations);
  if (activeCount == 0) return fail("All input factors are constant");

  // Kept: a singular matrix ends the measures at its variable; the flags and ranks of what there is follow.
  if (deriveMeasures(correlations, runs, kRaw, progress.part(kCorrelated, kRawDone)) &&
      !deriveRankMeasures(prep, outputs, progress.part(kRawDone, kRanksDone)))
    return fail(kUnreadable);
  if (progress.stopped()) return false;
  if (!decideSignificance(prep.samples, outputs, progress.part(kRanksDone, 1.0))) return fail(kUnreadable);
  if (!rankMeasures()) return fail(kUnreadable);
  computed = true;
  return true;
}

// False when a table can't be read, or when stopped.
bool RegressionStats::deriveRankMeasures(const PrepConfiguration& prep, const OutputTable& outputs,
                                         const Progress& progress) {
  const std::int32_t runs = outputs.rows();
  RankColumns ranks;
  if (!ranks.add(prep.samples, progress.part(0.0, 0.4)) || !ranks.add(outputs, progress.part(0.4, 0.5))) return false;
  const auto readRanks = [&ranks](std::int32_t row, std::int32_t count, double* values) {
    ranks.rows(row, count, values);
    return true;
  };
  ColumnCorrelations correlations;
  if (!correlations.compute(runs, ranks.columns(), readRanks, progress.part(0.5, 0.7))) return false;
  rankMoments = correlations.moments();
  return !deriveMeasures(correlations, runs, kRanks, progress.part(0.7, 0.75)) ||
         computeSmirnov(ranks, runs, progress.part(0.75, 1.0));
}

bool RegressionStats::applyAlpha(float value, const PrepConfiguration& prep, const OutputTable& outputs,
                                 const Progress& progress) {
  std::string reason;
  if (!computed || value == alpha || factorCount != prep.factors.factorCount() || variableCount != outputs.columns() ||
      !tablesFit(prep, outputs, reason))
    return false;
  const float before = std::exchange(alpha, value);
  if (decideSignificance(prep.samples, outputs, progress)) return true;
  alpha = before;
  return false;
}

bool RegressionStats::determination(std::int32_t variable, double& raw, double& ranks) const {
  if (variable < 0 || static_cast<std::size_t>(variable) >= determinations_.size()) return false;
  raw = determinations_[static_cast<std::size_t>(variable)][0];
  ranks = determinations_[static_cast<std::size_t>(variable)][1];
  return true;
}

bool RegressionStats::determinationAdjusted(std::int32_t variable, double& raw, double& ranks) const {
  if (variable < 0 || static_cast<std::size_t>(variable) >= determinations_.size()) return false;
  raw = determinations_[static_cast<std::size_t>(variable)][2];
  ranks = determinations_[static_cast<std::size_t>(variable)][3];
  return true;
}

void RegressionStats::writeHeader(TextWriter& out) const {
  SensitivityStats::writeHeader(out);
  out << alpha << '\n';
}

void RegressionStats::readHeader(TextReader& in) {
  SensitivityStats::readHeader(in);
  in.expect("the confidence of the tests") >> alpha;
}

std::string_view RegressionStats::kindSeparator() const {
  return "\t\t";
}

void RegressionStats::writeTail(TextWriter& out) const {
  out << activeCount << '\n';
  for (const auto* moments : {&factorMoments, &rankMoments})
    for (const ColumnMoments& column : *moments) out << column.mean << kValueSeparator << column.std << '\n';
  // Kept: no line end follows the last coefficients, so that the count of the next block stands on their line.
  for (const auto& coefficients : determinations_) {
    out << '\n';
    for (const double value : coefficients) out << value << kValueSeparator;
  }
}

void RegressionStats::readTail(TextReader& in) {
  in.expect("the number of active factors") >> activeCount;
  const std::int64_t columns = std::int64_t{factorCount} + variableCount;
  if (!in.checkCount(columns, 4 * kMinNumberBytes) || !in.checkCount(variableCount, 4 * kMinNumberBytes)) return;
  for (auto* moments : {&factorMoments, &rankMoments}) {
    moments->resize(static_cast<std::size_t>(columns));
    for (ColumnMoments& column : *moments) {
      in.expect("the mean of a column") >> column.mean;
      in.expect("the standard deviation of a column") >> column.std;
    }
  }
  determinations_.resize(static_cast<std::size_t>(variableCount));
  for (auto& coefficients : determinations_)
    for (double& value : coefficients) in.expect("a coefficient of determination") >> value;
  if (in.ok()) findSingular();
}

}  // namespace tarvex
