// Many values as they enter equations: what enteringValue() does for one, lane by lane in vector registers. What isn't
// plain is left to enteringValue().
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <limits>

#include "base/VectorUnits.h"
#include "factors/NumberLiteral.h"

namespace tarvex {
namespace {

constexpr std::size_t kLanes = 4;
constexpr std::size_t kGroups = 4;  // of lanes side by side, as each step of one waits for the step before
constexpr std::size_t kTogether = kLanes * kGroups;
constexpr std::size_t kMostAtOnce = 128;  // values of one look at how large they are
typedef double Lanes __attribute__((vector_size(kLanes * sizeof(double))));
typedef std::int64_t Masks __attribute__((vector_size(kLanes * sizeof(double))));

constexpr double kWhole = 0x1.8p52;  // a number plus this less this is the whole number next to it
constexpr int kShownDigits = 6;
constexpr int kMostPoint = 9;  // digits behind the point of the least numbers that are written without an exponent
// By the number p of digits behind the point, of six: 10^p, and 10^(5 - p), the least number that has no more of them.
constexpr std::array<double, kMostPoint + 1> kScales = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9};
constexpr std::array<double, kMostPoint + 1> kCounts = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
constexpr std::array<double, kMostPoint + 1> kLeastSizes = {1e5, 1e4, 1e3, 1e2, 1e1, 1e0, 1e-1, 1e-2, 1e-3, 1e-4};

// The digits behind the point that values of one block have.
struct Points {
  int least;
  int most;
};

int pointOf(double size) {
  int point = 0;
  while (point < kMostPoint && size < kLeastSizes[static_cast<std::size_t>(point)]) ++point;
  return point;
}

TARVEX_INLINE void sizesOf(const double* values, Lanes& sizes) {
  constexpr auto kSign = static_cast<std::int64_t>(std::uint64_t{1} << 63);
  Masks bits;
  std::memcpy(&bits, values, sizeof bits);
  bits &= ~kSign;
  std::memcpy(&sizes, &bits, sizeof sizes);
}

// Zeros, whose digits are 0 wherever the point stands, and what is no number don't count. `count` is a multiple of
// kTogether.
TARVEX_INLINE Points pointsOf(const double* values, std::size_t count) {
  Lanes least[kGroups] = {};
  Lanes most[kGroups] = {};
  for (Lanes& none : least) none += std::numeric_limits<double>::infinity();
  for (std::size_t i = 0; i < count; i += kTogether)
    for (std::size_t g = 0; g < kGroups; ++g) {
      Lanes size;
      sizesOf(values + i + g * kLanes, size);
      least[g] = ((size < least[g]) & (size > 0.0)) ? size : least[g];
      most[g] = size > most[g] ? size : most[g];
    }
  for (std::size_t g = 1; g < kGroups; ++g) {
    least[0] = least[g] < least[0] ? least[g] : least[0];
    most[0] = most[g] > most[0] ? most[g] : most[0];
  }
  return {pointOf(std::max({most[0][0], most[0][1], most[0][2], most[0][3]})),
          pointOf(std::min({least[0][0], least[0][1], least[0][2], least[0][3]}))};
}

// Enters kTogether values that lie one behind the other, of these points.
TARVEX_INLINE void enterTogether(const double* values, Points points, double* entering) {
  constexpr double kError = 1e-9;  // more than the scaled number errs by: it is rounded once
  Lanes digits[kGroups] = {};
  Lanes point[kGroups] = {};
  Lanes fraction[kGroups] = {};
  Masks isPlain[kGroups] = {};
  Lanes size[kGroups] = {};
  Lanes scale[kGroups] = {};
  // The decade decides how many of the six digits stand behind the point.
  auto p = static_cast<std::size_t>(points.most);
  for (std::size_t g = 0; g < kGroups; ++g) {
    sizesOf(values + g * kLanes, size[g]);
    scale[g] = Lanes{} + kScales[p];
    point[g] = Lanes{} + kCounts[p];
  }
  while (p-- > static_cast<std::size_t>(points.least)) {
    const Lanes least = Lanes{} + kLeastSizes[p];
    const Lanes further = Lanes{} + kScales[p];
    const Lanes count = Lanes{} + kCounts[p];
    for (std::size_t g = 0; g < kGroups; ++g) {
      scale[g] = size[g] >= least ? further : scale[g];
      point[g] = size[g] >= least ? count : point[g];
    }
  }
  for (std::size_t g = 0; g < kGroups; ++g) {
    const Lanes scaled = size[g] * scale[g];
    digits[g] = (scaled + kWhole) - kWhole;
    const Lanes rest = scaled - digits[g];
    isPlain[g] =
        ((scaled >= 1e5) | (size[g] == 0.0)) & (digits[g] < 1e6) & (rest < 0.5 - kError) & (rest > kError - 0.5);
  }
  // By the rule of readNumberLiteral: the digits behind the point from the right, times 0.1. All values have the first
  // of these steps, some of them the others.
  int place = 0;
  for (; place < std::min(points.least, kShownDigits); ++place)
    for (std::size_t g = 0; g < kGroups; ++g) {
      const Lanes left = (digits[g] * 0.1 - 0.45 + kWhole) - kWhole;
      fraction[g] = ((digits[g] - 10.0 * left) + fraction[g]) * 0.1;
      digits[g] = left;
    }
  for (; place < std::min(points.most, kShownDigits); ++place)
    for (std::size_t g = 0; g < kGroups; ++g) {
      const Lanes left = (digits[g] * 0.1 - 0.45 + kWhole) - kWhole;
      const Lanes further = ((digits[g] - 10.0 * left) + fraction[g]) * 0.1;
      const Masks isBehind = point[g] > kCounts[static_cast<std::size_t>(place)];
      fraction[g] = isBehind ? further : fraction[g];
      digits[g] = isBehind ? left : digits[g];
    }
  // Zeros between the point and the six digits.
  for (; place < points.most; ++place)
    for (std::size_t g = 0; g < kGroups; ++g)
      fraction[g] = point[g] > kCounts[static_cast<std::size_t>(place)] ? fraction[g] * 0.1 : fraction[g];
  Masks allPlain = isPlain[0];
  for (std::size_t g = 0; g < kGroups; ++g) {
    constexpr auto kSign = static_cast<std::int64_t>(std::uint64_t{1} << 63);
    const Lanes number = digits[g] + fraction[g];
    Masks sign;
    std::memcpy(&sign, values + g * kLanes, sizeof sign);
    Masks bits;
    std::memcpy(&bits, &number, sizeof bits);
    bits |= sign & kSign;
    std::memcpy(entering + g * kLanes, &bits, sizeof bits);
    allPlain &= isPlain[g];
  }
  if ((allPlain[0] & allPlain[1] & allPlain[2] & allPlain[3]) != 0) return;
  for (std::size_t k = 0; k < kTogether; ++k)
    if (isPlain[k / kLanes][k % kLanes] == 0) entering[k] = enteringValue(values[k]);
}

TARVEX_INLINE void enterRows(const double* values, std::size_t step, std::size_t count, double* entering) {
  double block[kMostAtOnce];
  for (std::size_t first = 0; first < count; first += kMostAtOnce) {
    const std::size_t rows = std::min(kMostAtOnce, count - first);
    const std::size_t whole = rows / kTogether * kTogether;
    for (std::size_t k = 0; k < whole; ++k) block[k] = values[(first + k) * step];
    const Points points = whole > 0 ? pointsOf(block, whole) : Points{};
    for (std::size_t k = 0; k < whole; k += kTogether) enterTogether(block + k, points, entering + first + k);
    for (std::size_t k = whole; k < rows; ++k) entering[first + k] = enteringValue(values[(first + k) * step]);
  }
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
