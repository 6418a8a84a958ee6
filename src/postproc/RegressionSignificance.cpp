// The significance of RegressionStats' measures.
#include <algorithm>
#include <cmath>

#include "postproc/CriticalValues.h"
#include "postproc/MeasureSupport.h"
#include "postproc/RegressionStats.h"

namespace tarvex {

namespace {

constexpr std::size_t kOperationsAFactor = 3;
constexpr std::int32_t kErrorRows = 64;  // that are read together

std::size_t slotAt(std::int32_t variable, std::int32_t slot) {
  return static_cast<std::size_t>(variable) * RegressionStats::kSlots + static_cast<std::size_t>(slot);
}

// Student's statistic of a correlation.
double correlationStatistic(double r, std::int32_t runs) {
  return std::sqrt((static_cast<double>(runs) - 2.0) / (1.0 - r * r)) * r;
}

}  // namespace

bool RegressionStats::decideSignificance(const sampValues& samples, const OutputTable& outputs,
                                         const Progress& progress) {
  const std::int32_t runs = outputs.rows();
  if (runs <= 1) return true;
  std::vector<double> errors;
  if (!sumSquaredErrors(samples, outputs, progress, errors)) return false;
  for (std::int32_t variable = 0; variable < variableCount; ++variable) {
    flagCorrelations(variable, runs);
    for (const DataKind kind : {kRaw, kRanks})
      flagRegression(variable, kind, runs, errors[static_cast<std::size_t>(2 * variable + kind)]);
    for (IndexRecord& record : records) {
      const auto flag = [&](std::int32_t measure) -> double& {
        return record.values[slotAt(variable, kFlagSlots + measure)];
      };
      flag(kPcc) = flag(kPrcc) = 1.0;
      flag(kSmirnov) = record.values[slotAt(variable, kSmirnov)] == kNoDistance ? 0.0 : 1.0;
    }
  }
  return true;
}

// Kept: a signed test with N degrees of freedom, so that no negative correlation is ever significant; and a correlation
// of exactly 1 is significant on raw data but not on ranks.
void RegressionStats::flagCorrelations(std::int32_t variable, std::int32_t runs) {
  const double threshold = studentQuantile(runs, alpha);
  for (const std::size_t factor : activeFactors())
    for (const Measure measure : {kPear, kSpea}) {
      std::vector<double>& values = records[factor].values;
      const double r = values[slotAt(variable, measure)];
      const bool significant = r == 1.0 ? measure == kPear : correlationStatistic(r, runs) > threshold;
      values[slotAt(variable, kFlagSlots + measure)] = significant ? 1.0 : 0.0;
    }
}

void RegressionStats::flagRegression(std::int32_t variable, DataKind kind, std::int32_t runs, double squaredError) {
  const std::vector<ColumnMoments>& moments = kind == kRaw ? factorMoments : rankMoments;
  const std::vector<std::size_t> active = activeFactors();
  const auto k = static_cast<std::int32_t>(active.size());
  const double freedom = k + 2 < runs ? runs - k - 2 : runs;
  // Kept: the thresholds of the two kinds count different factors.
  const double threshold = studentQuantile(runs - (kind == kRaw ? k : factorCount), alpha);
  for (const std::size_t factor : active) {
    const double deviation =
        std::sqrt(squaredError / freedom) / (std::sqrt(static_cast<double>(runs) - 1.0) * moments[factor].std);
    const bool significant = coefficient(factor, variable, kind) / deviation > threshold;
    records[factor].values[slotAt(variable, kFlagSlots + kSrc + kind)] = significant ? 1.0 : 0.0;
  }
}

double RegressionStats::coefficient(std::size_t factor, std::int32_t variable, DataKind kind) const {
  const IndexRecord& record = records[factor];
  if (record.kind != FactorKind::Uncertain) return 0.0;
  const std::vector<ColumnMoments>& moments = kind == kRaw ? factorMoments : rankMoments;
  const std::size_t column = static_cast<std::size_t>(factorCount) + static_cast<std::size_t>(variable);
  return moments[column].std * record.values[slotAt(variable, kSrc + kind)] / moments[factor].std;
}

// Kept: the models have no intercept, and that of the ranks is held against the raw data.
bool RegressionStats::sumSquaredErrors(const sampValues& samples, const OutputTable& outputs, const Progress& progress,
                                       std::vector<double>& errors) const {
  const std::size_t factors = records.size();
  const std::size_t models = 2 * static_cast<std::size_t>(variableCount);
  std::vector<double> coefficients(factors * models);
  for (std::size_t j = 0; j < factors; ++j)
    for (std::int32_t variable = 0; variable < variableCount; ++variable)
      for (const DataKind kind : {kRaw, kRanks})
        coefficients[static_cast<std::size_t>(2 * variable + kind) * factors + j] = coefficient(j, variable, kind);

  errors.assign(models, 0.0);
  const auto variables = static_cast<std::size_t>(variableCount);
  std::vector<double> x(factors * kErrorRows), y(variables * kErrorRows);
  WorkPace pace(progress, (std::int64_t{outputs.rows()} + kErrorRows - 1) / kErrorRows,
                kErrorRows * static_cast<std::int64_t>(factors * (models + kOperationsAFactor)));
  for (std::int64_t first = 0; first < outputs.rows(); first += kErrorRows) {
    if (!pace.step()) return false;
    const auto row = static_cast<std::int32_t>(first);
    const std::int32_t count = std::min(kErrorRows, outputs.rows() - row);
    if (!samples.getRows(row, count, x.data()) || !outputs.getRows(row, count, y.data())) return false;
    for (std::size_t r = 0; r < static_cast<std::size_t>(count); ++r) {
      for (std::size_t m = 0; m < models; ++m) {
        double prediction = 0.0;
        for (std::size_t j = 0; j < factors; ++j) prediction += coefficients[m * factors + j] * x[r * factors + j];
        const double error = prediction - y[r * variables + m / 2];
        errors[m] += error * error;
      }
    }
  }
  return true;
}

}  // namespace tarvex
