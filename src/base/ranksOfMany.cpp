#include "base/ranksOfMany.h"

#include <algorithm>

#include "base/Memory.h"
#include "base/sortKey.h"
#include "base/sortPositions.h"

namespace tarvex {
namespace {

constexpr int kClassBits = 16;  // sign, exponent and the first bits behind them: leading bits of a key
constexpr std::size_t kClasses = std::size_t{1} << kClassBits;
constexpr std::size_t kSortedTogether = (std::size_t{1} << 20) - 1;  // the most that are sorted in short entries
constexpr std::size_t kReadTogether = std::size_t{1} << 16;

std::size_t classOf(double number) {
  return static_cast<std::size_t>(sortKey(number) >> (64 - kClassBits));
}

// Numbers of neighbouring classes, with their places, in the order of their places.
struct Group {
  std::size_t firstClass = 0;
  std::size_t lastClass = 0;  // inclusive
  std::size_t count = 0;
};

// As many classes to a group as are sorted together, one at least.
std::vector<Group> groupsOf(const std::vector<std::size_t>& counts) {
  std::vector<Group> groups;
  for (std::size_t k = 0; k < kClasses; ++k) {
    if (counts[k] == 0) continue;
    if (groups.empty() || groups.back().count + counts[k] > kSortedTogether) groups.push_back({k, k, 0});
    groups.back().lastClass = k;
    groups.back().count += counts[k];
  }
  return groups;
}

// Calls visit(place, number) for all numbers. False when the source fails, and after a stop.
template <class Visit>
bool forNumbers(std::size_t count, const NumberSource& source, const Progress& progress, Visit visit) {
  std::vector<double> numbers(std::min(count, kReadTogether));
  for (std::size_t first = 0; first < count; first += numbers.size()) {
    const std::size_t some = std::min(numbers.size(), count - first);
    if (!progress.report(first, count) || !source(first, some, numbers.data())) return false;
    for (std::size_t i = 0; i < some; ++i) visit(first + i, numbers[i]);
  }
  return true;
}

bool rankGroup(const Group& group, std::size_t before, const NumberSource& source, std::vector<std::int32_t>& ranks,
               const Progress& progress) {
  constexpr double kReadShare = 0.5;  // of the time, roughly
  std::vector<double> numbers;
  std::vector<std::int32_t> places;
  numbers.reserve(group.count);
  places.reserve(group.count);
  const auto collect = [&](std::size_t place, double number) {
    const std::size_t ofClass = classOf(number);
    if (ofClass < group.firstClass || ofClass > group.lastClass) return;
    numbers.push_back(number);
    places.push_back(static_cast<std::int32_t>(place));
  };
  std::vector<std::int32_t> positions;
  if (!forNumbers(ranks.size(), source, progress.part(0.0, kReadShare), collect) ||
      !sortPositions(numbers, positions, progress.part(kReadShare, 1.0)))
    return false;
  for (std::size_t p = 0; p < positions.size(); ++p)
    ranks[static_cast<std::size_t>(places[static_cast<std::size_t>(positions[p])])] =
        static_cast<std::int32_t>(before + p);
  return progress.report(1.0);
}

bool rankAll(std::size_t count, const NumberSource& source, std::vector<std::int32_t>& ranks,
             const Progress& progress) {
  constexpr double kCountShare = 0.1;
  std::vector<std::size_t> counts(kClasses);
  const auto countOne = [&counts](std::size_t, double number) { ++counts[classOf(number)]; };
  if (!forNumbers(count, source, progress.part(0.0, kCountShare), countOne)) return false;
  ranks.resize(count);
  const std::vector<Group> groups = groupsOf(counts);
  const Progress ofGroups = progress.part(kCountShare, 1.0);
  std::size_t before = 0;
  for (std::size_t g = 0; g < groups.size(); ++g) {
    const auto share = [&groups](std::size_t k) { return static_cast<double>(k) / static_cast<double>(groups.size()); };
    if (!rankGroup(groups[g], before, source, ranks, ofGroups.part(share(g), share(g + 1)))) return false;
    before += groups[g].count;
  }
  return true;
}

}  // namespace

bool ranksOfMany(std::size_t count, const NumberSource& source, std::vector<std::int32_t>& ranks,
                 const Progress& progress) {
  bool ranked = false;
  if (fitsInMemory([&] { ranked = rankAll(count, source, ranks, progress); }) && ranked) return true;
  ranks = std::vector<std::int32_t>();
  return false;
}

}  // namespace tarvex
