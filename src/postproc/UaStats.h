#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "base/Progress.h"
#include "base/TextRules.h"
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

enum HistogramScale : int { kLinearScale = 0, kLogScale = 1 };

// Descriptive statistics of the analysed variables.
class UaStats {
 public:
  // What the getters give out of range, and where a file has no such values.
  static constexpr double kUnavailable = 1e308;

  double tchebyConfidence = 0.75;
  double kolmogorovConfidence = 0.9;

  // A variable per column of the table, named by `names`, lines of at most 999 characters. False, with the reason in
  // errorText and the old statistics left, when a name is none, the table can't be read, or it was stopped.
  [[nodiscard]] bool compute(const std::vector<std::string>& names, const OutputTable& table,
                             const Progress& progress = {});
  std::string errorText = "No errors";
  void clear();  // no variables; the levels stay

  std::int32_t variableCount() const { return static_cast<std::int32_t>(names_.size()); }
  std::int32_t sampleSize() const { return sampleSize_; }
  double minimum(std::int32_t variable) const;  // nan for a variable without a number, as the maximum
  double maximum(std::int32_t variable) const;
  double mean(std::int32_t variable) const { return valueOf(means_, variable); }
  double std(std::int32_t variable) const { return valueOf(stds_, variable); }
  double skewness(std::int32_t variable) const { return valueOf(skewness_, variable); }
  double kurtosis(std::int32_t variable) const { return valueOf(kurtosis_, variable); }
  // Null out of range.
  const Histogram* linearHistogram(std::int32_t variable) const;
  const Histogram* logHistogram(std::int32_t variable) const;
  const std::string* name(std::int32_t variable) const;
  // Whether the variable has one: runs in bins of finite edges.
  bool hasHistogram(std::int32_t variable, HistogramScale scale) const;

  // A level between 0 and 1, both excluded; any other is refused.
  [[nodiscard]] bool setTchebyConfidence(double level);
  [[nodiscard]] bool setKolmogorovConfidence(double level);
  // Half-widths of the bounds on the mean (Chebyshev's inequality, Student's t). Both read tchebyConfidence. The second
  // is -1.0 when the t table has no such level.
  double tchebyBound(std::int32_t variable) const;
  double tTestBound(std::int32_t variable) const;
  // Share of the runs between a and b, in the units of the scale (logarithms on the logarithmic one). May exceed 1 a
  // little, or by a bin, where the interval ends in the first or last bin.
  double intervalProbability(double a, double b, std::int32_t variable, int scale) const;

  // How many characters the name of a variable may have: what a record of the statistics holds.
  static constexpr std::size_t kMaxNameChars = 999;
  static constexpr LineRule kNameRule{"the name of a variable", kMaxNameChars};

  // The uncertainty block. read() works on a fresh object; a failed reader leaves it without variables.
  void write(TextWriter& out) const;
  void read(TextReader& in);

 private:
  double valueOf(const std::vector<double>& values, std::int32_t variable) const;
  bool knows(std::int32_t variable) const { return variable >= 0 && variable < variableCount(); }
  std::int32_t countedRuns(std::int32_t variable) const;
  bool computeVariable(std::size_t variable, const std::vector<double>& column, const Progress& progress);
  void readBlock(TextReader& in, std::int32_t count);

  std::int32_t sampleSize_ = 0;
  std::vector<std::string> names_;
  std::vector<double> minima_, maxima_, means_, stds_, skewness_, kurtosis_;
  std::vector<Histogram> linearHistograms_, logHistograms_;
};

}  // namespace tarvex
