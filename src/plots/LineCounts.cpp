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
constexpr std::size_t kSortColumns = 6;        // a strip's lines are sorted as soon as counted in so many columns
constexpr std::chrono::milliseconds kLook{1};  // between two looks at what other threads do

// The columns of a strip, or some of them.
struct StripPiece {
  std::size_t strip;  // from this axis to the next one
  int first, last;    // as in LineStrip
};

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

// As many whole strips for each of `threads`, and the rest of them in pieces, so that no thread waits for another's
// last strip; whole ones, too, where sorting their lines again and again would take longer.
std::vector<StripPiece> stripPieces(const std::vector<LineCounts::Axis>& axes, int width, std::size_t threads) {
  const auto columnOf = [&](double x) { return std::clamp(static_cast<int>(std::lround(x)), 0, width); };
  const std::size_t strips = axes.empty() ? 0 : axes.size() - 1;
  const std::size_t rest = strips % threads;
  std::vector<StripPiece> pieces;
  for (std::size_t strip = 0; strip < strips; ++strip) {
    const int first = columnOf(axes[strip].x);
    const auto columns = static_cast<std::size_t>(std::max(columnOf(axes[strip + 1].x) - first, 0));
    const bool isCut = strip >= strips - rest && rest * (columns / threads + kSortColumns) < columns;
    const std::size_t count = isCut ? threads : 1;
    for (std::size_t i = 0; i < count; ++i)
      pieces.push_back(
          {strip, first + static_cast<int>(columns * i / count), first + static_cast<int>(columns * (i + 1) / count)});
  }
  return pieces;
}

}  // namespace

bool LineCounts::count(const std::vector<Axis>& axes, const std::vector<std::uint8_t>& classes,
                       const std::vector<Colour>& palette, const Progress& progress) {
  const LineGrid grid = gridFor(height_, thickness_, classes.size());
  parts_ = static_cast<std::uint32_t>(grid.subRows * grid.subColumns);
  const std::size_t pixels = static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_);
  std::vector<std::uint32_t> counts, inks;
  if (!zerosWatched(counts, pixels, progress) || !zerosWatched(inks, pixels, progress)) return false;
  // Narrow columns take in their neighbours, and so need them.
  const std::vector<StripPiece> pieces = stripPieces(axes, width_, grid.subColumns == 1 ? Cores::count() : 1);
  std::atomic<std::size_t> next = 0;
  std::atomic<std::size_t> begun = 0, ended = 0;
  // Pieces share no column: each writes what is its own.
  const auto work = [&](std::size_t part, std::size_t, std::size_t) {
    const Progress watched = part == 0 ? progress : Progress();
    for (std::size_t i = next++; i < pieces.size(); i = next++) {
      ++begun;
      const CountAtEnd counted(ended);
      const auto& [number, first, last] = pieces[i];
      const Axis& from = axes[number];
      const Axis& to = axes[number + 1];
      LineStrip strip(grid, first, last, from.x, to.x);
      const double all = static_cast<double>(pieces.size());
      const double done = static_cast<double>(i);
      if (strip.count(from.rows, to.rows, classes, palette, watched.part(done / all, (done + 1.0) / all)))
        strip.write(width_, counts, inks);
      else
        next = pieces.size();
    }
    // The others' last pieces take as long as any.
    while (part == 0 && ended < begun) {
      if (!watched.report(1.0)) next = pieces.size();
      std::this_thread::sleep_for(kLook);
    }
  };
  // Few lines, too, take some milliseconds: each column has its sums.
  inParts(pieces.size(), 1, work);
  if (progress.stopped()) return false;
  counts_ = std::move(counts);
  inks_ = std::move(inks);
  return true;
}

}  // namespace tarvex
