#include "postproc/RegressionStats.h"

#include "base/TextReader.h"
#include "base/TextWriter.h"

namespace tarvex {

namespace {

constexpr std::string_view kMeasureNames[RegressionStats::kMeasures] = {"PEAR", "SPEA", "PCC",    "PRCC",
                                                                        "SRC",  "SRRC", "Smirnov"};
constexpr std::uint64_t kMinNumberBytes = 2;  // a digit and a blank

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
  in >> alpha;
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
  in >> activeCount;
  const std::int64_t columns = std::int64_t{factorCount} + variableCount;
  if (!in.checkCount(columns, 4 * kMinNumberBytes) || !in.checkCount(variableCount, 4 * kMinNumberBytes)) return;
  for (auto* moments : {&factorMoments, &rankMoments}) {
    moments->resize(static_cast<std::size_t>(columns));
    for (ColumnMoments& column : *moments) in >> column.mean >> column.std;
  }
  determinations_.resize(static_cast<std::size_t>(variableCount));
  for (auto& coefficients : determinations_)
    for (double& value : coefficients) in >> value;
}

}  // namespace tarvex
