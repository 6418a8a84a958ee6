#include "postproc/CurveSpectrum.h"

#include <algorithm>
#include <cmath>
#include <future>
#include <numeric>
#include <thread>

#include "postproc/MeasureSupport.h"

namespace tarvex {

namespace {

constexpr long double kTwoPi = 6.283185307179586476925L;
constexpr std::size_t kSharedWork = 2000000;  // steps, some milliseconds: from here on a thread pays

}  // namespace

void CurveSpectrum::prepareWaves(std::int32_t count) {
  if (waves_.size() == static_cast<std::size_t>(count)) return;
  waves_.resize(static_cast<std::size_t>(count));
  for (std::int32_t i = 0; i < count; ++i) {
    const long double angle = kTwoPi * i / count;
    waves_[i] = {static_cast<double>(std::cos(angle)), static_cast<double>(std::sin(angle))};
  }
}

void CurveSpectrum::load(const double* runs, std::int32_t count) {
  count_ = count;
  prepareWaves(count);
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

long double CurveSpectrum::sumUpTo(std::int32_t last) const {
  std::vector<long double> found(static_cast<std::size_t>(std::max(last, 0)));
  const auto fill = [&](std::size_t from, std::size_t to) {
    // Two at a time: they don't wait for each other's additions.
    for (; from + 1 < to; from += 2) {
      Sums odd(stepOf(static_cast<std::int64_t>(from) + 1), middle_);
      Sums even(stepOf(static_cast<std::int64_t>(from) + 2), middle_);
      for (std::size_t i = 0; i < sums_.size(); ++i) {
        odd.add(sums_[i], differences_[i], waves_);
        even.add(sums_[i], differences_[i], waves_);
      }
      found[from] = odd.power(count_);
      found[from + 1] = even.power(count_);
    }
    if (from < to) found[from] = at(static_cast<std::int64_t>(from) + 1);
  };
  const std::size_t parts = sums_.size() * found.size() < kSharedWork ? 1 : std::thread::hardware_concurrency();
  const std::size_t share = found.size() / std::max<std::size_t>(parts, 1) + 1;
  std::vector<std::future<void>> others;
  for (std::size_t from = share; from < found.size(); from += share)
    others.push_back(std::async(fill, from, std::min(from + share, found.size())));
  fill(0, std::min(share, found.size()));
  for (const std::future<void>& other : others) other.wait();
  // Summed in their order, however many did the work.
  return std::accumulate(found.begin(), found.end(), 0.0L);
}

long double CurveSpectrum::harmonics(std::int64_t frequency) const {
  return at(frequency) + at(2 * frequency) + at(3 * frequency) + at(4 * frequency);
}

}  // namespace tarvex
