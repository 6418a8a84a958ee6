#include "limits.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <complex>
#include <cstdio>
#include <cstring>
#include <memory>
#include <numbers>
#include <numeric>

namespace tarvex::limits {
namespace {

constexpr std::size_t kBlock = std::size_t{1} << 20;

struct Closer {
  void operator()(std::FILE* file) const { static_cast<void>(std::fclose(file)); }
};
using File = std::unique_ptr<std::FILE, Closer>;

// Positions by value, eleven bits at a time, of numbers in [0, 1).
std::vector<std::uint32_t> sorted(const std::vector<double>& values) {
  constexpr int kBits = 11;
  constexpr int kPasses = 3;
  struct Entry {
    std::uint64_t key;
    std::uint32_t position;
  };
  std::vector<Entry> entries(values.size()), next(values.size());
  std::array<std::array<std::uint32_t, 1U << kBits>, kPasses> starts{};
  const auto digit = [](std::uint64_t key, int pass) { return key >> (kBits * pass) & ((1U << kBits) - 1); };
  for (std::uint32_t i = 0; i < values.size(); ++i) {
    entries[i] = {static_cast<std::uint64_t>(values[i] * 0x1p33), i};
    for (int pass = 0; pass < kPasses; ++pass) ++starts[pass][digit(entries[i].key, pass)];
  }
  for (int pass = 0; pass < kPasses; ++pass) {
    std::exclusive_scan(starts[pass].begin(), starts[pass].end(), starts[pass].begin(), 0U);
    for (const Entry& entry : entries) next[starts[pass][digit(entry.key, pass)]++] = entry;
    entries.swap(next);
  }
  std::vector<std::uint32_t> positions(values.size());
  for (std::size_t i = 0; i < values.size(); ++i) positions[i] = entries[i].position;
  return positions;
}

double correlationSum(const std::vector<std::vector<double>>& columns) {
  double sum = 0.0;
  std::vector<double> means;
  for (const std::vector<double>& column : columns)
    means.push_back(std::accumulate(column.begin(), column.end(), 0.0) / static_cast<double>(column.size()));
  for (std::size_t i = 0; i < columns.size(); ++i)
    for (std::size_t j = i; j < columns.size(); ++j) {
      double four[4] = {};
      for (std::size_t r = 0; r + 4 <= columns[i].size(); r += 4)
        for (std::size_t k = 0; k < 4; ++k) four[k] += (columns[i][r + k] - means[i]) * (columns[j][r + k] - means[j]);
      sum += four[0] + four[1] + four[2] + four[3];
    }
  return sum;
}

using Wave = std::complex<double>;

// In place, the order of the results reversed by bits.
void transform(std::vector<Wave>& values, const std::vector<Wave>& roots) {
  const std::size_t n = values.size();
  for (std::size_t half = n / 2; half > 0; half /= 2)
    for (std::size_t start = 0; start < n; start += 2 * half)
      for (std::size_t i = 0; i < half; ++i) {
        const Wave a = values[start + i], b = values[start + i + half], d = a - b, w = roots[i * (n / 2 / half)];
        values[start + i] = a + b;
        values[start + i + half] = {d.real() * w.real() - d.imag() * w.imag(),
                                    d.real() * w.imag() + d.imag() * w.real()};
      }
}

// The quantile at equal steps of u, from the sums of the density at equal steps of x.
std::vector<double> quantileTable(const Quantile& column) {
  constexpr std::size_t kSteps = 1 << 14;
  std::vector<double> sums(kSteps + 1), table(kSteps + 1, column.upper);
  const double step = (column.upper - column.lower) / kSteps;
  for (std::size_t i = 0; i < kSteps; ++i)
    sums[i + 1] = sums[i] + column.density(column.lower + (static_cast<double>(i) + 0.5) * step);
  std::size_t at = 0;
  for (std::size_t i = 0; i < kSteps; ++i) {
    const double wanted = sums[kSteps] * static_cast<double>(i) / kSteps;
    while (sums[at + 1] < wanted) ++at;
    table[i] = column.lower + (static_cast<double>(at) + (wanted - sums[at]) / (sums[at + 1] - sums[at])) * step;
  }
  return table;
}

class Random {
 public:
  std::uint64_t operator()() {  // splitmix64
    std::uint64_t z = state_ += 0x9e3779b97f4a7c15U;
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9U;
    z = (z ^ (z >> 27)) * 0x94d049bb133111ebU;
    return z ^ (z >> 31);
  }
  double unit() { return static_cast<double>((*this)() >> 11) * 0x1p-53; }

 private:
  std::uint64_t state_ = 4711;
};

template <class T>
void shuffle(std::vector<T>& values, Random& random) {
  for (std::size_t i = values.size() - 1; i > 0; --i)
    std::swap(values[i], values[static_cast<std::size_t>(random.unit() * static_cast<double>(i + 1))]);
}

std::vector<double> latinColumn(std::size_t runs, const Quantile& column, Random& random) {
  std::vector<std::uint32_t> strata(runs);
  std::iota(strata.begin(), strata.end(), 0U);
  shuffle(strata, random);
  const std::vector<double> table = column.density != nullptr ? quantileTable(column) : std::vector<double>();
  std::vector<double> values(runs);
  for (std::size_t i = 0; i < runs; ++i) {
    const double u = (strata[i] + random.unit()) / static_cast<double>(runs);
    if (table.empty()) {
      values[i] = column.inverse(u);
      continue;
    }
    const double place = u * static_cast<double>(table.size() - 1);
    const auto cell = static_cast<std::size_t>(place);
    values[i] = table[cell] + (place - static_cast<double>(cell)) * (table[cell + 1] - table[cell]);
  }
  return values;
}

// Where each column's values go by the ranks of scores with a correlation of 0.5 between neighbours.
void reorder(std::vector<std::vector<double>>& columns, Random& random) {
  constexpr double kNearby = 0.5;
  const double rest = std::sqrt(1.0 - kNearby * kNearby);
  const std::size_t runs = columns[0].size();
  const Quantile normal{-6.0, 6.0, [](double x) { return std::exp(-x * x / 2.0); }, nullptr};
  std::vector<double> scores = latinColumn(runs, normal, random);
  std::vector<double> before(runs), unit(runs), moved(runs);
  for (std::vector<double>& column : columns) {
    shuffle(scores, random);
    for (std::size_t i = 0; i < runs; ++i) before[i] = kNearby * before[i] + rest * scores[i];
    for (std::size_t i = 0; i < runs; ++i) unit[i] = std::clamp((before[i] + 8.0) / 16.0, 0.0, 0.999999);
    const std::vector<std::uint32_t> order = sorted(unit);
    const auto [low, high] = std::minmax_element(column.begin(), column.end());
    const double lower = *low, span = (*high - *low) * 1.000001;
    for (std::size_t i = 0; i < runs; ++i) unit[i] = (column[i] - lower) / span;
    const std::vector<std::uint32_t> upwards = sorted(unit);
    for (std::size_t i = 0; i < runs; ++i) moved[order[i]] = column[upwards[i]];
    column = moved;
  }
}

}  // namespace

double latin(std::int32_t runs, const std::vector<Quantile>& columns, bool ranked) {
  Random random;
  std::vector<std::vector<double>> values;
  for (const Quantile& column : columns) values.push_back(latinColumn(static_cast<std::size_t>(runs), column, random));
  if (ranked) reorder(values, random);
  double sum = 0.0;
  for (const std::vector<double>& column : values) sum += column.front() + column.back();
  return sum;
}

double ishigami(const std::vector<double>& inputs) {
  double sum = 0.0;
  for (std::size_t at = 0; at < inputs.size(); at += 3) {
    const double* x = inputs.data() + at;
    const double second = std::sin(x[1]);
    const double square = x[2] * x[2];
    sum += std::sin(x[0]) * (1.0 + 0.1 * square * square) + 7.0 * second * second;
  }
  return sum;
}

double gFunction(const std::vector<double>& inputs) {
  constexpr std::array kA = {0.0, 1.0, 4.5, 9.0, 99.0, 99.0, 99.0, 99.0};
  double sum = 0.0;
  for (std::size_t at = 0; at < inputs.size(); at += kA.size()) {
    double product = 1.0;
    for (std::size_t j = 0; j < kA.size(); ++j)
      product *= (std::abs(4.0 * inputs[at + j] - 2.0) + kA[j]) / (1.0 + kA[j]);
    sum += product;
  }
  return sum;
}

double sobolDesign(std::int32_t baseSize, std::int32_t factors) {
  const auto k = static_cast<std::size_t>(factors);
  const auto n = static_cast<std::size_t>(baseSize);
  constexpr std::size_t kMost = 20;
  std::array<std::array<std::uint32_t, kMost>, 32> directions{};
  for (std::size_t b = 0; b < directions.size(); ++b)
    for (std::size_t j = 0; j < kMost; ++j) directions[b][j] = (0x80000000U >> b) ^ static_cast<std::uint32_t>(j);
  const std::size_t blocks = 2 + 2 * k;
  const std::unique_ptr<double[]> table(new double[n * blocks * k]);
  double* a = table.get();
  double* b = a + n * k;
  std::array<std::uint32_t, kMost> point{};
  for (std::size_t i = 0; i < n; ++i) {
    const auto& step = directions[static_cast<std::size_t>(std::countr_zero(i + 1))];
    for (std::size_t j = 0; j < 2 * k; ++j) point[j] ^= step[j];
    for (std::size_t j = 0; j < k; ++j) a[i * k + j] = (point[j] >> 1) * 0x1p-31;
    for (std::size_t j = 0; j < k; ++j) b[i * k + j] = (point[k + j] >> 1) * 0x1p-31;
  }
  double* next = b + n * k;
  for (const bool intoA : {false, true})
    for (std::size_t j = 0; j < k; ++j, next += n * k) {
      std::memcpy(next, intoA ? a : b, n * k * sizeof(double));
      const double* other = intoA ? b : a;
      for (std::size_t i = 0; i < n; ++i) next[i * k + j] = other[i * k + j];
    }
  return std::accumulate(next - k, next, 0.0);
}

double sobolIndices(const std::vector<double>& runs, std::int32_t baseSize, std::int32_t factors) {
  const double mean = std::accumulate(runs.begin(), runs.end(), 0.0) / static_cast<double>(runs.size());
  const auto n = static_cast<std::size_t>(baseSize);
  const double* a = runs.data();
  const double* b = a + n;
  double sum = 0.0;
  double squares[2] = {};
  for (std::size_t i = 0; i < n; ++i) {
    squares[0] += (a[i] - mean) * (a[i] - mean);
    squares[1] += (b[i] - mean) * (b[i] - mean);
    sum += (a[i] - mean) * (b[i] - mean);
  }
  for (std::int32_t j = 0; j < factors; ++j) {
    const double* c = b + n * static_cast<std::size_t>(j + 1);
    const double* d = c + n * static_cast<std::size_t>(factors);
    double products[4] = {};
    for (std::size_t i = 0; i < n; ++i) {
      products[0] += (a[i] - mean) * (c[i] - mean);
      products[1] += (b[i] - mean) * (c[i] - mean);
      products[2] += (a[i] - mean) * (d[i] - mean);
      products[3] += (b[i] - mean) * (d[i] - mean);
    }
    sum += products[0] / squares[0] + products[1] / squares[1] + products[2] / squares[0] + products[3] / squares[1];
  }
  return sum;
}

// The transform of any length as a convolution with a chirp (L. I. Bluestein, IEEE Trans. Audio Electroacoust. 18,
// 1970), by transforms of a power of two.
double fourierSums(const double* runs, std::int32_t count, std::int32_t last) {
  const auto n = static_cast<std::size_t>(count);
  const auto frequencies = static_cast<std::size_t>(last) + 1;
  static std::vector<Wave> roots, chirp, kernel;
  const std::size_t size = std::bit_ceil(n + frequencies);
  if (chirp.size() != n) {
    roots.resize(size / 2);
    for (std::size_t i = 0; i < roots.size(); ++i)
      roots[i] = std::polar(1.0, -2.0 * std::numbers::pi * static_cast<double>(i) / static_cast<double>(size));
    chirp.resize(n);
    for (std::size_t i = 0; i < n; ++i)
      chirp[i] = std::polar(1.0, -std::numbers::pi * static_cast<double>(i * i % (2 * n)) / static_cast<double>(n));
    kernel.assign(size, {});
    for (std::size_t i = 0; i < frequencies; ++i) kernel[i] = std::conj(chirp[i]);
    for (std::size_t i = 1; i < n; ++i) kernel[size - i] = std::conj(chirp[i]);
    transform(kernel, roots);
  }
  std::vector<Wave> values(size);
  for (std::size_t i = 0; i < n; ++i) values[i] = runs[i] * chirp[i];
  transform(values, roots);
  for (std::size_t i = 0; i < size; ++i) {
    const Wave v = values[i], k = kernel[i];
    values[i] = {v.real() * k.real() - v.imag() * k.imag(), -(v.real() * k.imag() + v.imag() * k.real())};
  }
  // Back again; the results stand in the order reversed by bits, so this transform takes them so.
  const std::size_t half = size / 2;
  for (std::size_t width = 1; width <= half; width *= 2)
    for (std::size_t start = 0; start < size; start += 2 * width)
      for (std::size_t i = 0; i < width; ++i) {
        const Wave w = roots[i * (half / width)], b = values[start + i + width], a = values[start + i];
        const Wave t{b.real() * w.real() - b.imag() * w.imag(), b.real() * w.imag() + b.imag() * w.real()};
        values[start + i] = a + t;
        values[start + i + width] = a - t;
      }
  double sum = 0.0;
  for (std::size_t f = 1; f < frequencies; ++f) sum += std::norm(values[f]);
  return 2.0 * sum /
         (static_cast<double>(size) * static_cast<double>(size) * static_cast<double>(n) * static_cast<double>(n));
}

double regression(const std::vector<std::vector<double>>& columns) {
  const std::size_t runs = columns[0].size();
  std::vector<std::vector<double>> ranks(columns.size(), std::vector<double>(runs));
  std::vector<char> isHigh(runs, 0);
  double distances = 0.0;
  for (std::size_t c = columns.size(); c-- > 0;) {
    const std::vector<std::uint32_t> order = sorted(columns[c]);
    for (std::size_t i = 0; i < runs; ++i) ranks[c][order[i]] = static_cast<double>(i);
    if (c + 1 == columns.size()) {
      for (std::size_t i = runs * 9 / 10; i < runs; ++i) isHigh[order[i]] = 1;
      continue;
    }
    std::int64_t seen = 0;
    std::int64_t most = 0;
    for (const std::uint32_t row : order) {
      seen += isHigh[row] ? 9 : -1;
      most = std::max(most, std::abs(seen));
    }
    distances += static_cast<double>(most);
  }
  return distances + correlationSum(columns) + correlationSum(ranks);
}

double statistics(const std::vector<double>& table, std::int32_t columns) {
  const auto k = static_cast<std::size_t>(columns);
  std::vector<double> means(k), deviations(k), products(k * k), cubes(k), fourths(k);
  for (std::size_t at = 0; at < table.size(); at += k)
    for (std::size_t c = 0; c < k; ++c) means[c] += table[at + c];
  for (double& mean : means) mean /= static_cast<double>(table.size() / k);
  for (std::size_t at = 0; at < table.size(); at += k) {
    for (std::size_t c = 0; c < k; ++c) deviations[c] = table[at + c] - means[c];
    for (std::size_t i = 0; i < k; ++i)
      for (std::size_t j = i; j < k; ++j) products[i * k + j] += deviations[i] * deviations[j];
    for (std::size_t c = 0; c < k; ++c) {
      const double square = deviations[c] * deviations[c];
      cubes[c] += square * deviations[c];
      fourths[c] += square * square;
    }
  }
  return std::accumulate(products.begin(), products.end(), cubes[0] + fourths[0]);
}

bool writeTable(const std::string& path, const std::vector<double>& table, std::int32_t columns) {
  const File file(std::fopen(path.c_str(), "w"));
  if (file == nullptr) return false;
  std::vector<char> buffer(kBlock + 64);
  char* next = buffer.data();
  std::int32_t column = 0;
  for (const double value : table) {
    auto digits = static_cast<std::uint64_t>(value * 1e10 + 0.5);
    *next++ = '0';
    *next++ = '.';
    for (int i = 10; i-- > 0; digits /= 10) next[i] = static_cast<char>('0' + digits % 10);
    next += 10;
    *next++ = '\t';
    if (++column == columns) {
      *next++ = '\n';
      column = 0;
    }
    if (next - buffer.data() < static_cast<std::ptrdiff_t>(kBlock)) continue;
    std::fwrite(buffer.data(), 1, static_cast<std::size_t>(next - buffer.data()), file.get());
    next = buffer.data();
  }
  const auto rest = static_cast<std::size_t>(next - buffer.data());
  return std::fwrite(buffer.data(), 1, rest, file.get()) == rest;
}

double readTable(const std::string& path, std::size_t cells) {
  const File file(std::fopen(path.c_str(), "r"));
  if (file == nullptr) return 0.0;
  std::vector<double> table(cells);
  std::vector<char> buffer(kBlock);
  std::size_t cell = 0;
  std::uint64_t digits = 0;
  while (const std::size_t got = std::fread(buffer.data(), 1, buffer.size(), file.get()))
    for (std::size_t i = 0; i < got; ++i) {
      const char c = buffer[i];
      if (c >= '0') {
        digits = digits * 10 + static_cast<std::uint64_t>(c - '0');
      } else if (c == '\t' && cell < cells) {
        table[cell++] = static_cast<double>(digits) / 1e10;
        digits = 0;
      }
    }
  return std::accumulate(table.begin(), table.end(), 0.0);
}

}  // namespace tarvex::limits
