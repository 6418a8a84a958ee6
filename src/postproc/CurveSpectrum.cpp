#include "postproc/CurveSpectrum.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

#include "base/Cores.h"
#include "postproc/MeasureSupport.h"

namespace tarvex {

namespace {

constexpr long double kTwoPi = 6.283185307179586476925L;
// Steps, some milliseconds: from here on a thread pays, and between two reports a core makes no more.
constexpr std::size_t kSharedWork = 2000000;
constexpr std::int64_t kOperationsAWave = 100;

}  // namespace

bool CurveSpectrum::prepareWaves(std::int32_t count, const Progress& progress) {
  if (waves_.size() == static_cast<std::size_t>(count)) return true;
  waves_.clear();
  std::vector<Wave> waves(static_cast<std::size_t>(count));
  WorkPace pace(progress, count, kOperationsAWave);
  for (std::int32_t i = 0; i < count; ++i) {
    if (!pace.step()) return false;
    const long double angle = kTwoPi * i / count;
    waves[static_cast<std::size_t>(i)] = {static_cast<double>(std::cos(angle)), static_cast<double>(std::sin(angle))};
  }
  waves_ = std::move(waves);
  return true;
}

bool CurveSpectrum::load(const double* runs, std::int32_t count, const Progress& progress) {
  if (!prepareWaves(count, progress) || !progress.report(1.0)) return false;
  count_ = count;
  const long double mean = seriesMean<long double>(runs, static_cast<std::size_t>(count));
  long double squares = 0.0L;
  for (std::int32_t i = 0; i < count; ++i) squares += (runs[i] - mean) * (runs[i] - mean);
  variance_ = squares / (count - 1);

  // Kept: a curve of even length has its middle between two runs, half a step from both, and yet counts them as a whole
  // step away. The classic indices of existing results were computed so.
  const std::int32_t half = count / 2;
  const bool even = count % 2 == 0;
  const std::int32_t below = half - 1;
  const std::int32_t above = even ? half : half + 1;
  middle_ = even ? 0.0 : static_cast<double>(runs[half] - mean);
  sums_.resize(static_cast<std::size_t>(half));
  differences_.resize(static_cast<std::size_t>(half));
  for (std::int32_t i = 0; i < half; ++i) {
    const long double left = runs[below - i] - mean;
    const long double right = runs[above + i] - mean;
    sums_[i] = static_cast<double>(right + left);
    differences_[i] = static_cast<double>(right - left);
  }
  return true;
}

// The sums A and B of one frequency, run by run from the middle outwards.
class CurveSpectrum::Sums {
 public:
  Sums(std::size_t step, double middle) : step_(step), a_(middle) {}

  void add(double sum, double difference, const std::vector<Wave>& waves) {
    place_ += step_;
    if (place_ >= waves.size()) place_ -= waves.size();
    a_ += static_cast<long double>(sum) * waves[place_].cosine;
    b_ += static_cast<long double>(difference) * waves[place_].sine;
  }
  long double power(std::int32_t count) const {
    const long double a = a_ / count;
    const long double b = b_ / count;
    return 2.0L * (a * a + b * b);
  }

 private:
  std::size_t step_;
  std::size_t place_ = 0;
  long double a_;
  long double b_ = 0.0L;
};

std::size_t CurveSpectrum::stepOf(std::int64_t frequency) const {
  return static_cast<std::size_t>((frequency % count_ + count_) % count_);
}

long double CurveSpectrum::at(std::int64_t frequency) const {
  Sums sums(stepOf(frequency), middle_);
  for (std::size_t i = 0; i < sums_.size(); ++i) sums.add(sums_[i], differences_[i], waves_);
  return sums.power(count_);
}

void CurveSpectrum::fill(std::size_t first, std::size_t last, std::vector<long double>& found) const {
  // Two at a time: they don't wait for each other's additions.
  for (; first + 1 < last; first += 2) {
    Sums odd(stepOf(static_cast<std::int64_t>(first) + 1), middle_);
    Sums even(stepOf(static_cast<std::int64_t>(first) + 2), middle_);
    for (std::size_t i = 0; i < sums_.size(); ++i) {
      odd.add(sums_[i], differences_[i], waves_);
      even.add(sums_[i], differences_[i], waves_);
    }
    found[first] = odd.power(count_);
    found[first + 1] = even.power(count_);
  }
  if (first < last) found[first] = at(static_cast<std::int64_t>(first) + 1);
}

bool CurveSpectrum::addUpTo(std::int32_t last, long double& sum, const Progress& progress) const {
  std::vector<long double> found(static_cast<std::size_t>(std::max(last, 0)));
  const std::size_t cores = sums_.size() * found.size() < kSharedWork ? 1 : Cores::count();
  const std::size_t share = 2 * std::max<std::size_t>(kSharedWork / (2 * std::max<std::size_t>(sums_.size(), 1)), 1);
  std::size_t next = 0;
  while (next < found.size()) {
    if (!progress.report(next, found.size())) return false;
    const std::size_t begin = std::exchange(next, std::min(next + cores * share, found.size()));
    const std::size_t shares = (next - begin + share - 1) / share;
    inParts(shares, cores == 1 ? shares : 1, [&](std::size_t, std::size_t from, std::size_t to) {
      fill(begin + from * share, std::min(begin + to * share, next), found);
    });
  }
  // Summed in their order, however many did the work.
  sum += std::accumulate(found.begin(), found.end(), 0.0L);
  return true;
}

long double CurveSpectrum::harmonics(std::int64_t frequency) const {
  return at(frequency) + at(2 * frequency) + at(3 * frequency) + at(4 * frequency);
}

}  // namespace tarvex
