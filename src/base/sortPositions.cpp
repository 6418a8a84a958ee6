#include "base/sortPositions.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <memory>
#include <numeric>
#include <span>
#include <utility>

#include "base/Memory.h"
#include "base/sortKey.h"

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

std::size_t digitOf(std::uint64_t key, int digit) {
  return key >> (digit * kDigitBits) & (kDigitValues - 1);
}

// A value's key and place.
struct Entry {
  static Entry of(std::uint64_t key, std::size_t i) { return {key, static_cast<std::int32_t>(i)}; }
  std::uint64_t bits() const { return key; }
  std::int32_t place() const { return position; }

  std::uint64_t key;
  std::int32_t position;
};

// The same in half the room, of few values: the leading bits of the key above the place.
struct ShortEntry {
  static ShortEntry of(std::uint64_t key, std::size_t i) { return {(key & ~kPlace) | i}; }
  std::uint64_t bits() const { return word; }
  std::int32_t place() const { return static_cast<std::int32_t>(word & kPlace); }

  static constexpr std::uint64_t kPlace = kManyKeys - 1;
  static_assert((kPlace & kManyKeys) == 0 && kPlace < std::uint64_t{1} << (kDigitBits * (kDigits - kDigitsOfFew)));
  std::uint64_t word;
};

// Calls step(i) for 0 to below `count`. False: stopped, in a report of which one comes every some milliseconds.
template <class Step>
bool forAll(std::size_t count, const Progress& progress, Step step) {
  constexpr std::size_t kAtOnce = std::size_t{1} << 18;
  for (std::size_t first = 0; first < count; first += kAtOnce) {
    if (first > 0 && !progress.report(first, count)) return false;
    const std::size_t last = std::min(first + kAtOnce, count);
    for (std::size_t i = first; i < last; ++i) step(i);
  }
  return progress.report(1.0);
}

enum class Runs { Sorted, Long, Stopped };

// Entries of equal leading bits stand together, in the order of their positions: sorts each such run by the whole key.
// Long: a run is so long that this would take its time.
template <class Item>
Runs sortRuns(std::span<Item> entries, int bitsBelow, const std::vector<double>& values, const Progress& progress) {
  constexpr std::ptrdiff_t kShortRun = 16;
  constexpr std::ptrdiff_t kLongRun = 2000;
  constexpr std::ptrdiff_t kAtOnce = std::ptrdiff_t{1} << 18;
  const auto keyOf = [&values](const Item& item) { return sortKey(values[static_cast<std::size_t>(item.place())]); };
  const auto less = [&keyOf](const Item& a, const Item& b) { return keyOf(a) < keyOf(b); };
  auto reported = entries.begin();
  for (auto run = entries.begin(); run != entries.end();) {
    if (run - reported > kAtOnce) {
      reported = run;
      if (!progress.report(run - entries.begin(), std::ssize(entries))) return Runs::Stopped;
    }
    auto end = run + 1;
    while (end != entries.end() && end->bits() >> bitsBelow == run->bits() >> bitsBelow) ++end;
    if (end - run <= kShortRun) {
      for (auto next = run + 1; next != end; ++next)
        std::rotate(std::upper_bound(run, next, *next, less), next, next + 1);
    } else if (!std::is_sorted(run, end, less)) {
      if (end - run > kLongRun) return Runs::Long;
      std::stable_sort(run, end, less);
    }
    run = end;
  }
  return Runs::Sorted;
}

// Digits from `first` on, the least significant of them first: each pass keeps the order of the one before, so equal
// digits stay in place. The leading digits leave few neighbours to be sorted by the rest of the keys; where they leave
// many, all digits are used. Empty after a stop.
template <class Item>
std::vector<std::int32_t> sortByDigits(const std::vector<double>& values, int first, const Progress& progress) {
  // Not filled with zeros first: every entry is written before it is read.
  auto entries = std::make_unique_for_overwrite<Item[]>(values.size());
  auto sorted = std::make_unique_for_overwrite<Item[]>(values.size());
  std::array<std::array<std::size_t, kDigitValues>, kDigits> counts{};
  const int steps = kDigits - first + 3;  // keys, passes, runs, positions
  int step = 0;
  const auto nextPart = [&] {
    ++step;
    return progress.part((step - 1.0) / steps, static_cast<double>(step) / steps);
  };
  bool going = forAll(values.size(), nextPart(), [&](std::size_t i) {
    const std::uint64_t key = sortKey(values[i]);
    entries[i] = Item::of(key, i);
    for (int digit = first; digit < kDigits; ++digit) ++counts[static_cast<std::size_t>(digit)][digitOf(key, digit)];
  });
  for (int digit = first; digit < kDigits && going; ++digit) {
    const Progress ofPass = nextPart();
    auto& starts = counts[static_cast<std::size_t>(digit)];
    if (starts[digitOf(entries[0].bits(), digit)] == values.size()) continue;  // all alike
    std::exclusive_scan(starts.begin(), starts.end(), starts.begin(), std::size_t{0});
    going = forAll(values.size(), ofPass,
                   [&](std::size_t i) { sorted[starts[digitOf(entries[i].bits(), digit)]++] = entries[i]; });
    entries.swap(sorted);
  }
  const Progress ofRuns = nextPart();
  const Runs runs = going && first > 0
                        ? sortRuns<Item>({entries.get(), values.size()}, first * kDigitBits, values, ofRuns)
                        : Runs::Sorted;
  if (runs == Runs::Long) return sortByDigits<Entry>(values, 0, progress.part((step - 1.0) / steps, 1.0));
  if (!going || runs == Runs::Stopped) return {};
  std::vector<std::int32_t> positions(values.size());
  going = forAll(positions.size(), nextPart(), [&](std::size_t p) { positions[p] = entries[p].place(); });
  return going ? positions : std::vector<std::int32_t>();
}

std::vector<std::int32_t> positionsOf(const std::vector<double>& values, const Progress& progress) {
  if (values.size() >= kMinDigitSort && values.size() < kManyKeys)
    return sortByDigits<ShortEntry>(values, kDigits - kDigitsOfFew, progress);
  if (values.size() >= kMinDigitSort && values.size() <= kMaxDigitSort)
    return sortByDigits<Entry>(values, kDigits - kDigitsOfMany, progress);
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
  return progress.report(1.0);
}

}  // namespace tarvex
