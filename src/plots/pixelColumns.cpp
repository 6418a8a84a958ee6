#include "plots/pixelColumns.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tarvex {
namespace {

using Place = std::pair<double, double>;

constexpr std::size_t kFew = 4000;  // a picture's width in pixels, times the four of a column

bool isFinite(const Place& place) {
  return std::isfinite(place.first) && std::isfinite(place.second);
}

bool ascends(const std::vector<Place>& places) {
  double last = -std::numeric_limits<double>::infinity();
  for (const Place& place : places) {
    if (!isFinite(place)) continue;
    if (place.first < last) return false;
    last = place.first;
  }
  return true;
}

// What stands in one column of pixels.
struct Column {
  double number;
  Place first, lowest, highest, last;

  Column(double at, const Place& place) : number(at), first(place), lowest(place), highest(place), last(place) {}
  void add(const Place& place) {
    if (place.second < lowest.second) lowest = place;
    if (place.second > highest.second) highest = place;
    last = place;
  }
  void appendTo(std::vector<Place>& places) const {
    places.insert(places.end(), {first, {first.first, lowest.second}, {first.first, highest.second}, last});
  }
};

}  // namespace

std::vector<Place> pixelColumns(std::vector<Place> places, double pixelsPerUnit) {
  if (places.size() <= kFew || !ascends(places)) return places;
  std::vector<Place> result;
  const Place gap{std::numeric_limits<double>::quiet_NaN(), 0.0};
  Column column(-1.0, gap);
  bool isOpen = false;
  bool hasGap = false;  // behind the column's last place
  for (const Place& place : places) {
    if (!isFinite(place)) {
      hasGap = true;
      continue;
    }
    const double number = std::floor(place.first * pixelsPerUnit);
    if (isOpen && number == column.number) {
      column.add(place);
    } else {
      if (isOpen) column.appendTo(result);
      if (hasGap) result.push_back(gap);
      column = Column(number, place);
      isOpen = true;
    }
    hasGap = false;
  }
  if (isOpen) column.appendTo(result);
  return result;
}

}  // namespace tarvex
