#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace tarvex {

struct CobwebChart;

// A range on an axis of a cobweb, in the axis's own units; both ends belong to it.
struct BrushRange {
  std::size_t axis = 0;
  double lower = 0.0, upper = 0.0;
  bool operator==(const BrushRange&) const = default;
};

// The ranges that a user draws on the axes of a cobweb, at most one on each: a run is kept that lies in all of them.
class ChartBrush {
 public:
  const std::vector<BrushRange>& ranges() const { return ranges_; }
  void set(std::vector<BrushRange> ranges);
  const BrushRange* on(std::size_t axis) const;
  // False when there was none.
  bool clear(std::size_t axis);

  // A drag begins at a value of an axis: in the axis's range it moves that, elsewhere it makes a new one.
  void begin(const CobwebChart& chart, std::size_t axis, double value);
  // The drag goes on at the value. False when it changes nothing, as on an axis that is a constant.
  bool dragTo(const CobwebChart& chart, double value);

  // By keyboard, in parts of the axis: moves the range, or makes it wider at both ends, from the whole axis at first. A
  // range that covers the axis again is none.
  bool move(const CobwebChart& chart, std::size_t axis, double by);
  bool widen(const CobwebChart& chart, std::size_t axis, double by);

  // Marks the runs outside of any range by 1. Returns how many are kept.
  std::int32_t mark(const CobwebChart& chart, std::vector<std::uint8_t>& dropped) const;

 private:
  bool put(BrushRange range);

  std::vector<BrushRange> ranges_;
  std::size_t axis_ = 0;              // of the drag
  double start_ = 0.0;                // where it began
  std::optional<BrushRange> moving_;  // what it moves, as it was then
};

}  // namespace tarvex
