#include "postproc/CurveSpectrum.h"

#include <cmath>
#include <cstddef>

#include "postproc/MeasureSupport.h"

namespace tarvex {

namespace {

constexpr long double kTwoPi = 6.283185307179586476925L;

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

long double CurveSpectrum::at(std::int64_t frequency) const {
  const auto count = static_cast<std::size_t>(count_);
  const auto step = static_cast<std::size_t>(((frequency % count_) + count_) % count_);
  long double a = middle_;
  long double b = 0.0L;
  std::size_t place = 0;
  for (std::size_t i = 0; i < sums_.size(); ++i) {
    place += step;
    if (place >= count) place -= count;
    const Wave wave = waves_[place];
    a += static_cast<long double>(sums_[i]) * wave.cosine;
    b += static_cast<long double>(differences_[i]) * wave.sine;
  }
  a /= count_;
  b /= count_;
  return 2.0L * (a * a + b * b);
}

long double CurveSpectrum::harmonics(std::int64_t frequency) const {
  return at(frequency) + at(2 * frequency) + at(3 * frequency) + at(4 * frequency);
}

}  // namespace tarvex
