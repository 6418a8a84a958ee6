// Many values as they enter equations: what enteringValue() does for one, lane by lane in vector registers. What isn't
// plain is left to enteringValue().
#include <array>
#include <cstdint>
#include <cstring>

#include "base/VectorUnits.h"
#include "factors/NumberLiteral.h"

namespace tarvex {
namespace {

constexpr std::size_t kLanes = 4;
constexpr std::size_t kGroups = 4;  // of lanes side by side, as each step of one waits for the step before
constexpr std::size_t kTogether = kLanes * kGroups;
typedef double Lanes __attribute__((vector_size(kLanes * sizeof(double))));
typedef std::int64_t Masks __attribute__((vector_size(kLanes * sizeof(double))));

constexpr double kWhole = 0x1.8p52;  // a number plus this less this is the whole number next to it
constexpr int kMostPoint = 9;  // digits behind the point of the least numbers that are written without an exponent
constexpr std::array<double, kMostPoint> kDecades = {1e-3, 1e-2, 1e-1, 1e0, 1e1, 1e2, 1e3, 1e4, 1e5};
constexpr std::array<double, kMostPoint> kScales = {1e8, 1e7, 1e6, 1e5, 1e4, 1e3, 1e2, 1e1, 1e0};
constexpr std::array<double, kMostPoint> kPoints = {8, 7, 6, 5, 4, 3, 2, 1, 0};

// Enters kTogether values; false when one of them needs a look at the whole number.
TARVEX_INLINE bool enterTogether(const double* values, std::size_t step, double* entering) {
  constexpr auto kSign = static_cast<std::int64_t>(std::uint64_t{1} << 63);
  constexpr double kError = 1e-9;  // more than the scaled number errs by: it is rounded once
  Masks sign[kGroups];
  Lanes digits[kGroups];
  Lanes point[kGroups];
  Lanes fraction[kGroups];
  Masks isPlain = {-1, -1, -1, -1};
  for (std::size_t g = 0; g < kGroups; ++g) {
    const double* const from = values + g * kLanes * step;
    const Lanes value = {from[0], from[step], from[2 * step], from[3 * step]};
    Masks bits;
    Lanes size;
    std::memcpy(&bits, &value, sizeof bits);
    sign[g] = bits & kSign;
    bits ^= sign[g];
    std::memcpy(&size, &bits, sizeof size);
    // The decade decides how many of the six digits stand behind the point.
    Lanes scale = Lanes{} + 1e9;
    point[g] = Lanes{} + kMostPoint;
    for (std::size_t k = 0; k < kDecades.size(); ++k) {
      scale = size >= kDecades[k] ? Lanes{} + kScales[k] : scale;
      point[g] = size >= kDecades[k] ? Lanes{} + kPoints[k] : point[g];
    }
    const Lanes scaled = size * scale;
    digits[g] = (scaled + kWhole) - kWhole;
    const Lanes rest = scaled - digits[g];
    isPlain &= (scaled >= 1e5) & (digits[g] < 1e6) & (rest < 0.5 - kError) & (rest > kError - 0.5);
    fraction[g] = Lanes{};
  }
  // By the rule of readNumberLiteral: the digits behind the point from the right, times 0.1.
  for (int place = 0; place < kMostPoint; ++place)
    for (std::size_t g = 0; g < kGroups; ++g) {
      const Lanes left = (digits[g] * 0.1 - 0.45 + kWhole) - kWhole;
      const Lanes further = ((digits[g] - 10.0 * left) + fraction[g]) * 0.1;
      const Masks isBehind = point[g] > static_cast<double>(place);
      fraction[g] = isBehind ? further : fraction[g];
      digits[g] = isBehind ? left : digits[g];
    }
  for (std::size_t g = 0; g < kGroups; ++g) {
    const Lanes number = digits[g] + fraction[g];
    Masks bits;
    std::memcpy(&bits, &number, sizeof bits);
    bits |= sign[g];
    std::memcpy(entering + g * kLanes, &bits, sizeof bits);
  }
  return (isPlain[0] & isPlain[1] & isPlain[2] & isPlain[3]) != 0;
}

TARVEX_INLINE void enterRows(const double* values, std::size_t step, std::size_t count, double* entering) {
  std::size_t first = 0;
  for (; first + kTogether <= count; first += kTogether) {
    if (enterTogether(values + first * step, step, entering + first)) continue;
    for (std::size_t k = first; k < first + kTogether; ++k) entering[k] = enteringValue(values[k * step]);
  }
  for (; first < count; ++first) entering[first] = enteringValue(values[first * step]);
}

TARVEX_WIDE void enterWide(const double* values, std::size_t step, std::size_t count, double* entering) {
  enterRows(values, step, count, entering);
}

}  // namespace

void enteringValues(const double* values, std::size_t step, std::size_t count, double* entering) {
  if (hasWideUnits())
    enterWide(values, step, count, entering);
  else
    enterRows(values, step, count, entering);
}

}  // namespace tarvex
