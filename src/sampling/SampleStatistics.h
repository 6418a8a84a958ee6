#pragma once

#include <cstdint>
#include <vector>

#include "base/Progress.h"

namespace tarvex {

class TextReader;
class TextWriter;
class sampValues;

// Correlation matrix and four moments a column of a finished sample.
class SampleStatistics {
 public:
  static constexpr double kUnavailable = -10.0;  // what the accessors give out of range

  // False, with nothing changed, when the store can't be read and after a stop. Of less than two runs they are not
  // numbers.
  [[nodiscard]] bool compute(const sampValues& samples, const Progress& progress = {});
  void write(TextWriter& out) const;
  // Reads order, matrix and moments; the rest of the last line is left. False, with nothing changed, for bad content.
  [[nodiscard]] bool read(TextReader& in);

  std::int32_t size() const { return size_; }
  double correlation(std::int32_t i, std::int32_t j) const;
  double mean(std::int32_t column) const { return moment(column, 0); }
  double stdDev(std::int32_t column) const { return moment(column, 1); }
  double skewness(std::int32_t column) const { return moment(column, 2); }
  double kurtosis(std::int32_t column) const { return moment(column, 3); }

 private:
  double moment(std::int32_t column, int which) const;

  std::int32_t size_ = 0;
  std::vector<double> correlation_;  // size squared, by row
  std::vector<double> moments_;      // four a column
};

}  // namespace tarvex
