#include "base/sortPositions.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <numeric>
#include <utility>

#include "base/Memory.h"

namespace tarvex {

namespace {

// Lengths for which the sort by digits pays, and for which its second copy of the keys is no burden.
constexpr std::size_t kMinDigitSort = 2000;
constexpr std::size_t kMaxDigitSort = std::size_t{1} << 24;
constexpr int kDigitBits = 11;
constexpr int kDigits = 6;  // 66 bits
// Leading digits that part most keys, and the number of keys from which it takes one more.
constexpr int kDigitsOfFew = 3;
constexpr int kDigitsOfMany = 4;
constexpr std::size_t kManyKeys = std::size_t{1} << 20;
constexpr std::size_t kDigitValues = std::size_t{1} << kDigitBits;

// A key whose unsigned order is that of the numbers: equal numbers, both zeros too, have one key, and what is not a
// number has the highest.
std::uint64_t sortKey(double value) {
  constexpr std::uint64_t kSign = std::uint64_t{1} << 63;
  if (std::isnan(value)) return ~std::uint64_t{0};
  const auto bits = std::bit_cast<std::uint64_t>(value + 0.0);
  return bits & kSign ? ~bits : bits | kSign;
}

std::size_t digitOf(std::uint64_t key, int digit) {
  return key >> (digit * kDigitBits) & (kDigitValues - 1);
}

struct Entry {
  std::uint64_t key;
  std::int32_t position;
};

// Entries of equal leading bits stand together, in the order of their positions: sorts each such run by the whole key.
// False when a run is so long that this would take its time.
bool sortRuns(std::vector<Entry>& entries, int bitsBelow) {
  constexpr std::ptrdiff_t kShortRun = 16;
  constexpr std::ptrdiff_t kLongRun = 2000;
  const auto less = [](const Entry& a, const Entry& b) { return a.key < b.key; };
  for (auto run = entries.begin(); run != entries.end();) {
    auto end = run + 1;
    while (end != entries.end() && end->key >> bitsBelow == run->key >> bitsBelow) ++end;
    if (end - run <= kShortRun) {
      for (auto next = run + 1; next != end; ++next)
        std::rotate(std::upper_bound(run, next, *next, less), next, next + 1);
    } else if (!std::is_sorted(run, end, less)) {
      if (end - run > kLongRun) return false;
      std::stable_sort(run, end, less);
    }
    run = end;
  }
  return true;
}

// Digits from `first` on, the least significant of them first: each pass keeps the order of the one before, so equal
// digits stay in place. The leading digits leave few neighbours to be sorted by the rest of the keys; where they leave
// many, all digits are used.
std::vector<std::int32_t> sortByDigits(const std::vector<double>& values, int first, const Progress& progress) {
  std::vector<Entry> entries(values.size());
  std::vector<Entry> sorted(values.size());
  std::array<std::array<std::size_t, kDigitValues>, kDigits> counts{};
  for (std::size_t i = 0; i < values.size(); ++i) {
    entries[i] = {sortKey(values[i]), static_cast<std::int32_t>(i)};
    for (int digit = first; digit < kDigits; ++digit)
      ++counts[static_cast<std::size_t>(digit)][digitOf(entries[i].key, digit)];
  }
  for (int digit = first; digit < kDigits; ++digit) {
    if (!progress.report(digit - first, 2 * kDigits)) return {};
    auto& starts = counts[static_cast<std::size_t>(digit)];
    if (starts[digitOf(entries[0].key, digit)] == values.size()) continue;  // all alike
    std::exclusive_scan(starts.begin(), starts.end(), starts.begin(), std::size_t{0});
    for (const Entry& entry : entries) sorted[starts[digitOf(entry.key, digit)]++] = entry;
    entries.swap(sorted);
  }
  if (first > 0 && !sortRuns(entries, first * kDigitBits)) return sortByDigits(values, 0, progress.part(0.5, 1.0));
  if (!progress.report(1.0)) return {};
  std::vector<std::int32_t> positions(values.size());
  for (std::size_t p = 0; p < positions.size(); ++p) positions[p] = entries[p].position;
  return positions;
}

std::vector<std::int32_t> positionsOf(const std::vector<double>& values, const Progress& progress) {
  if (values.size() >= kMinDigitSort && values.size() <= kMaxDigitSort)
    return sortByDigits(values, kDigits - (values.size() < kManyKeys ? kDigitsOfFew : kDigitsOfMany), progress);
  std::vector<std::int32_t> positions(values.size());
  std::iota(positions.begin(), positions.end(), 0);
  std::stable_sort(positions.begin(), positions.end(), [&values](std::int32_t a, std::int32_t b) {
    const double x = values[static_cast<std::size_t>(a)];
    const double y = values[static_cast<std::size_t>(b)];
    return x < y || (!std::isnan(x) && std::isnan(y));
  });
  return positions;
}

}  // namespace

bool sortPositions(const std::vector<double>& values, std::vector<std::int32_t>& positions, const Progress& progress) {
  positions.clear();
  return fitsInMemory([&] { positions = positionsOf(values, progress); }) && !progress.stopped();
}

bool ranksOf(const std::vector<double>& values, std::vector<std::int32_t>& ranks, const Progress& progress) {
  ranks.clear();
  std::vector<std::int32_t> positions;
  if (!sortPositions(values, positions, progress) || !progress.report(1.0)) return false;
  if (!fitsInMemory([&] { ranks.resize(values.size()); })) return false;
  for (std::size_t p = 0; p < positions.size(); ++p)
    ranks[static_cast<std::size_t>(positions[p])] = static_cast<std::int32_t>(p);
  return true;
}

}  // namespace tarvex
