#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "postproc/OutputTable.h"

namespace tarvex {

class TextReader;
class TextWriter;

inline constexpr int kHistogramEntries = 101;

struct HistogramEntry {
  double left = 0.0;   // left edge of the bin
  double count = 0.0;  // runs in it
};
using Histogram = std::array<HistogramEntry, kHistogramEntries>;

// Descriptive statistics of the analysed variables.
class UaStats {
 public:
  static constexpr double kUnavailable = 1e308;  // what the getters give out of range

  double tchebyConfidence = 0.75;
  double kolmogorovConfidence = 0.9;

  void compute(const std::vector<std::string>& names, const OutputTable& table);
  void clear();  // no variables; the levels stay

  std::int32_t variableCount() const { return static_cast<std::int32_t>(names_.size()); }
  std::int32_t sampleSize() const { return sampleSize_; }
  double minimum(std::int32_t variable) const;
  double maximum(std::int32_t variable) const;
  double mean(std::int32_t variable) const;
  double std(std::int32_t variable) const;
  double skewness(std::int32_t variable) const;
  double kurtosis(std::int32_t variable) const;
  // Null out of range.
  const Histogram* linearHistogram(std::int32_t variable) const;
  const Histogram* logHistogram(std::int32_t variable) const;
  const std::string* name(std::int32_t variable) const;

  bool setTchebyConfidence(double level);
  bool setKolmogorovConfidence(double level);
  // Half-widths of the bounds on the mean (Chebyshev's inequality, Student's t).
  double tchebyBound(std::int32_t variable) const;
  double tTestBound(std::int32_t variable) const;
  // Share of the runs between a and b, on the linear (0) or logarithmic (1) table.
  double intervalProbability(double a, double b, std::int32_t variable, int scale) const;

  void write(TextWriter& out) const;
  void read(TextReader& in);

 private:
  std::int32_t sampleSize_ = 0;
  std::vector<std::string> names_;
  std::vector<double> minima_, maxima_, means_, stds_, skewness_, kurtosis_;
  std::vector<Histogram> linearHistograms_, logHistograms_;
};

}  // namespace tarvex
