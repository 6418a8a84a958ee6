#include "sampling/DesignColumn.h"

#include <algorithm>
#include <new>

#include "base/Memory.h"
#include "base/WorkPace.h"
#include "base/sortPositions.h"

namespace tarvex {
namespace {

// Values up to which the sort by their positions is the faster one, and takes little memory.
constexpr std::size_t kFewValues = std::size_t{1} << 20;

bool sortFew(std::span<double> values, const Progress& progress) {
  constexpr std::int64_t kFetched = 4;  // additions in the time of a value from anywhere
  std::vector<double> unsorted;
  std::vector<std::int32_t> positions;
  if (!fitsInMemory([&] { unsorted.assign(values.begin(), values.end()); })) return false;
  if (!sortPositions(unsorted, positions, progress)) return false;
  WorkPace pace(progress, std::ssize(positions), kFetched);
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (!pace.step()) return false;
    values[i] = unsorted[static_cast<std::size_t>(positions[i])];
  }
  return true;
}

// In place: values below, at and above one of them, until the parts are small.
bool sortMany(std::span<double> values, const Progress& progress) {
  constexpr std::size_t kSortedAtOnce = std::size_t{1} << 16;
  std::size_t sorted = 0;
  for (std::vector<std::span<double>> open{values}; !open.empty();) {
    if (!progress.report(sorted, values.size())) return false;
    const std::span<double> part = open.back();
    open.pop_back();
    if (part.size() <= kSortedAtOnce) {
      std::sort(part.begin(), part.end());
      sorted += part.size();
      continue;
    }
    const double low = std::min(part.front(), part.back());
    const double pivot = std::clamp(part[part.size() / 2], low, std::max(part.front(), part.back()));
    const auto equal = std::partition(part.begin(), part.end(), [pivot](double x) { return x < pivot; });
    const auto above = std::partition(equal, part.end(), [pivot](double x) { return !(pivot < x); });
    sorted += static_cast<std::size_t>(above - equal);
    open.emplace_back(above, part.end());
    open.emplace_back(part.begin(), equal);
  }
  return true;
}

}  // namespace

double* designColumn(sampValues& store, std::int32_t column, std::int32_t rows) {
  const bool isFirst = store.rows() == 0 && column < store.columns();
  double* const values = isFirst && !store.addZeroRows(rows) ? nullptr : store.columnPointer(column);
  if (values == nullptr && store.errorText() == kNotEnoughMemory) throw std::bad_alloc();
  return values;
}

bool sortAscending(std::span<double> values, const Progress& progress) {
  // Strata come sorted. A value that is no number compares as unsorted.
  const auto isDisorder = [](double a, double b) { return !(a <= b); };
  if (std::adjacent_find(values.begin(), values.end(), isDisorder) == values.end()) return true;
  return values.size() <= kFewValues ? sortFew(values, progress) : sortMany(values, progress);
}

}  // namespace tarvex
