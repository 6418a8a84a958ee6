#include "sampling/SampleStatistics.h"

#include <algorithm>
#include <cmath>

#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "base/WorkPace.h"
#include "base/productSums.h"
#include "base/sampValues.h"
#include "sampling/Sampler.h"

namespace tarvex {

namespace {

constexpr std::int32_t kMoments = 4;  // a column

}  // namespace

bool SampleStatistics::compute(const sampValues& samples, const Progress& progress) {
  const std::int32_t rows = samples.rows();
  const auto columns = static_cast<std::size_t>(samples.columns());
  const double divisor = rows - 1.0;
  constexpr double kMeansShare = 0.2;  // of the time, roughly
  const Progress ofMeans = progress.part(0.0, kMeansShare);
  WorkPace firstPace(ofMeans, rows, samples.columns());
  std::vector<double> means(columns, 0.0);
  std::vector<double> batch(columns * kProductRows);
  for (std::int32_t first = 0; first < rows; first += kProductRows) {
    const std::int32_t count = std::min<std::int32_t>(kProductRows, rows - first);
    if (!samples.getRows(first, count, batch.data())) return false;
    const double* row = batch.data();
    for (std::int32_t r = 0; r < count; ++r, row += columns) {
      if (!firstPace.step()) return false;
      for (std::size_t c = 0; c < columns; ++c) means[c] += row[c];
    }
  }
  // Kept: the mean divides by n - 1, and deviations are taken from that mean; saved samples hold these numbers.
  for (double& mean : means) mean /= divisor;

  const Progress second = progress.part(kMeansShare, 1.0);
  WorkPace secondPace(second, rows, std::int64_t{samples.columns()} * samples.columns());
  std::vector<double> products(columns * columns, 0.0);  // the upper triangle, diagonal included
  std::vector<double> cubes(columns, 0.0);
  std::vector<double> fourths(columns, 0.0);
  for (std::int32_t first = 0; first < rows;) {
    const std::int32_t count = std::min<std::int32_t>(kProductRows, rows - first);
    double* deviations = batch.data();
    if (!samples.getRows(first, count, deviations)) return false;
    for (std::int32_t r = 0; r < count; ++r, deviations += columns) {
      if (!secondPace.step()) return false;
      for (std::size_t c = 0; c < columns; ++c) {
        const double deviation = deviations[c] -= means[c];
        const double square = deviation * deviation;
        cubes[c] += square * deviation;
        fourths[c] += square * square;
      }
    }
    addProducts(batch.data(), static_cast<std::size_t>(count), columns, products.data());
    first += count;
  }

  size_ = samples.columns();
  correlation_.assign(columns * columns, 0.0);
  moments_.assign(columns * kMoments, 0.0);
  for (std::size_t c = 0; c < columns; ++c) {
    const double s = std::sqrt(products[c * columns + c] / divisor);
    moments_[c * kMoments] = means[c];
    moments_[c * kMoments + 1] = s;
    moments_[c * kMoments + 2] = cubes[c] / (divisor * s * s * s);
    moments_[c * kMoments + 3] = fourths[c] / (divisor * s * s * s * s) - 3.0;
  }
  for (std::size_t i = 0; i < columns; ++i) {
    correlation_[i * columns + i] = 1.0;
    for (std::size_t j = i + 1; j < columns; ++j) {
      const double si = moments_[i * kMoments + 1];
      const double sj = moments_[j * kMoments + 1];
      const double r = si == 0.0 || sj == 0.0 ? 0.0 : products[i * columns + j] / (divisor * si * sj);
      correlation_[i * columns + j] = correlation_[j * columns + i] = r;
    }
  }
  return true;
}

void SampleStatistics::write(TextWriter& out) const {
  const auto columns = static_cast<std::size_t>(size_);
  const auto writeTable = [&out](const std::vector<double>& table, std::size_t width) {
    for (std::size_t k = 0; k < table.size(); ++k) {
      out << table[k] << '\t';
      if ((k + 1) % width == 0) out << '\n';
    }
  };
  out << size_ << '\n';
  writeTable(correlation_, columns);
  writeTable(moments_, kMoments);
}

bool SampleStatistics::read(TextReader& in) {
  constexpr std::uint64_t kBytesEach = 2;  // a digit and a separator
  std::int32_t size = 0;
  if (!readAtLeast(in, "the number of columns of the statistics", 0, size)) return false;
  const std::int64_t cells = static_cast<std::int64_t>(size) * size;
  if (!in.checkCount(cells + std::int64_t{kMoments} * size, kBytesEach)) return false;
  std::vector<double> correlation(static_cast<std::size_t>(cells));
  std::vector<double> moments(static_cast<std::size_t>(size) * kMoments);
  for (double& value : correlation) in.expect("a correlation of the statistics") >> value;
  for (double& value : moments) in.expect("a moment of the statistics") >> value;
  if (in.fail()) return false;
  size_ = size;
  correlation_ = std::move(correlation);
  moments_ = std::move(moments);
  return true;
}

double SampleStatistics::correlation(std::int32_t i, std::int32_t j) const {
  if (i < 0 || j < 0 || i >= size_ || j >= size_) return kUnavailable;
  return correlation_[static_cast<std::size_t>(i) * static_cast<std::size_t>(size_) + static_cast<std::size_t>(j)];
}

double SampleStatistics::moment(std::int32_t column, int which) const {
  if (column < 0 || column >= size_) return kUnavailable;
  return moments_[static_cast<std::size_t>(column) * kMoments + static_cast<std::size_t>(which)];
}

}  // namespace tarvex
