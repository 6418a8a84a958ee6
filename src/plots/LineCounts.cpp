#include "plots/LineCounts.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <thread>

#include "base/Cores.h"
#include "base/zerosWatched.h"
#include "plots/LineStrip.h"

namespace tarvex {

namespace {

constexpr std::size_t kFewLines = 3000;        // whose edges are smoothed both ways
constexpr std::size_t kSharedWork = 100000;    // lines times axes, some milliseconds: from here on a thread pays
constexpr std::chrono::milliseconds kLook{1};  // between two looks at what other threads do

// Counts what has ended, by a failure too.
class CountAtEnd {
 public:
  explicit CountAtEnd(std::atomic<std::size_t>& count) : count_(count) {}
  ~CountAtEnd() { ++count_; }
  CountAtEnd(const CountAtEnd&) = delete;
  CountAtEnd& operator=(const CountAtEnd&) = delete;

 private:
  std::atomic<std::size_t>& count_;
};

LineGrid gridFor(int height, double thickness, std::size_t lines) {
  constexpr double kThick = 1.05;  // pixels; such lines need no finer rows
  LineGrid grid;
  grid.height = height;
  grid.subRows = thickness < kThick ? 4 : 2;
  grid.subColumns = lines <= kFewLines ? 4 : 1;
  // Beyond the subrow of the middle.
  const int rest = std::max(static_cast<int>(std::lround(thickness * grid.subRows)) - 1, 0);
  grid.above = std::min(rest / 2, LineStrip::kMostBeyond);
  grid.below = std::min(rest - rest / 2, LineStrip::kMostBeyond);
  return grid;
}

}  // namespace

bool LineCounts::count(const std::vector<Axis>& axes, const std::vector<std::uint8_t>& classes,
                       const std::vector<Colour>& palette, const Progress& progress) {
  const LineGrid grid = gridFor(height_, thickness_, classes.size());
  parts_ = static_cast<std::uint32_t>(grid.subRows * grid.subColumns);
  const std::size_t pixels = static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_);
  std::vector<std::uint32_t> counts, inks;
  if (!zerosWatched(counts, pixels, progress) || !zerosWatched(inks, pixels, progress)) return false;
  const std::size_t strips = axes.empty() ? 0 : axes.size() - 1;
  std::atomic<std::size_t> next = 0;
  std::atomic<std::size_t> begun = 0, ended = 0;
  // Strips share no column: each writes what is its own.
  const auto work = [&](std::size_t part, std::size_t, std::size_t) {
    const Progress watched = part == 0 ? progress : Progress();
    for (std::size_t i = next++; i < strips; i = next++) {
      ++begun;
      const CountAtEnd counted(ended);
      const double share = static_cast<double>(i) / static_cast<double>(strips);
      const auto columnOf = [&](double x) { return std::clamp(static_cast<int>(std::lround(x)), 0, width_); };
      LineStrip strip(grid, columnOf(axes[i].x), columnOf(axes[i + 1].x), axes[i].x, axes[i + 1].x);
      const Progress ofStrip = watched.part(share, share + 1.0 / static_cast<double>(strips));
      if (strip.count(axes[i].rows, axes[i + 1].rows, classes, palette, ofStrip))
        strip.write(width_, counts, inks);
      else
        next = strips;
    }
    // The others' last strips take as long as any.
    while (part == 0 && ended < begun) {
      if (!watched.report(1.0)) next = strips;
      std::this_thread::sleep_for(kLook);
    }
  };
  inParts(strips, classes.size() * strips < kSharedWork ? strips : 1, work);
  if (progress.stopped()) return false;
  counts_ = std::move(counts);
  inks_ = std::move(inks);
  return true;
}

}  // namespace tarvex
