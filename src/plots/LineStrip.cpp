#include "plots/LineStrip.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tarvex {

namespace {

constexpr std::size_t kClasses = 256;
constexpr int kSlotsBeyond = 2 * LineStrip::kMostBeyond;  // slots beyond the plane, on each side
// Lines further away than this, in pixels, are as good as upright; beyond it single precision would fail.
constexpr float kFarAway = 1e6F;
constexpr std::size_t kBlock = 64;  // lines at a time: the arithmetic of a block takes vector instructions

// Counts the lines by their slot at share `t` of their way. Neighbours go to two tables in turn: where all lines meet,
// an addition needn't wait for the one before.
void addHits(const float* from, const float* rise, std::size_t count, float t, std::size_t slots, std::uint32_t* hits) {
  const float most = static_cast<float>(slots - 1);
  std::array<std::int32_t, kBlock> at;
  const auto place = [&](std::size_t i) {
    const float slot = from[i] + rise[i] * t;
    const float low = slot > 0.0F ? slot : 0.0F;
    return static_cast<std::int32_t>(low < most ? low : most);
  };
  std::size_t i = 0;
  for (; i + kBlock <= count; i += kBlock) {
    for (std::size_t k = 0; k < kBlock; ++k) at[k] = place(i + k);
    for (std::size_t k = 0; k < kBlock; k += 2) {
      ++hits[at[k]];
      ++hits[slots + static_cast<std::size_t>(at[k + 1])];
    }
  }
  for (; i < count; ++i) ++hits[place(i)];
}

std::uint32_t byteOf(float sum, std::uint32_t count) {
  constexpr float kByte = 257.0F;  // 65535 becomes 255
  const float raised = sum / static_cast<float>(count) / kByte + 0.5F;
  return static_cast<std::uint32_t>(raised);  // the nearest, of what is never negative
}

}  // namespace

LineStrip::LineStrip(const LineGrid& grid, int first, int last, double fromX, double toX)
    : grid_(grid),
      first_(first),
      columns_(static_cast<std::size_t>(std::max(last - first, 0))),
      rows_(static_cast<std::size_t>(grid.height)),
      slots_(rows_ * static_cast<std::size_t>(grid.subRows) + 2 * static_cast<std::size_t>(kSlotsBeyond)),
      borders_(columns_ * static_cast<std::size_t>(grid.subColumns) + 1),
      fromX_(fromX),
      toX_(toX),
      groups_(2 * kClasses) {}

// False after a stop, of which it asks without getting further.
bool LineStrip::sort(std::span<const float> from, std::span<const float> to, std::span<const std::uint8_t> classes,
                     const Progress& progress) {
  constexpr std::size_t kLinesAReport = std::size_t{1} << 19;  // some milliseconds
  const Progress here = progress.part(0.0, 0.0);
  const auto groupOf = [&](std::size_t line) -> std::size_t {
    return 2 * static_cast<std::size_t>(classes[line]) + (to[line] < from[line] ? 1 : 0);
  };
  const auto isLine = [&](std::size_t line) { return std::isfinite(from[line]) && std::isfinite(to[line]); };
  for (std::size_t line = 0; line < from.size(); ++line) {
    if (line % kLinesAReport == 0 && !here.report(0.0)) return false;
    if (isLine(line)) ++groups_[groupOf(line)].last;
  }
  std::size_t next = 0;
  for (Group& group : groups_) {
    group.first = next;
    next += group.last;
    group.last = group.first;
  }
  from_.resize(next);
  rise_.resize(next);
  const float subRows = static_cast<float>(grid_.subRows);
  for (std::size_t line = 0; line < from.size(); ++line) {
    if (line % kLinesAReport == 0 && !here.report(0.0)) return false;
    if (!isLine(line)) continue;
    const std::size_t place = groups_[groupOf(line)].last++;
    const float start = std::clamp(from[line], -kFarAway, kFarAway) * subRows;
    from_[place] = start + static_cast<float>(kSlotsBeyond);
    rise_[place] = std::clamp(to[line], -kFarAway, kFarAway) * subRows - start;
  }
  return here.report(0.0);
}

// From hits to how many lie in this slot or before it, summed over the slots so far. Both directions in one loop: each
// sum waits for the one before.
void LineStrip::sumUp() {
  std::uint32_t linesDown = 0, linesUp = 0;
  std::uint32_t sumDown = 0, sumUp = 0;
  for (std::size_t slot = 0; slot < slots_; ++slot) {
    linesDown += down_[slot] + down_[slots_ + slot];
    linesUp += up_[slot] + up_[slots_ + slot];
    down_[slot] = sumDown += linesDown;
    up_[slot] = sumUp += linesUp;
  }
}

void LineStrip::countBorder(std::size_t border, const Group& down, const Group& up) {
  const double x = first_ + static_cast<double>(border) / grid_.subColumns;
  const auto t = static_cast<float>(std::clamp((x - fromX_) / (toX_ - fromX_), 0.0, 1.0));
  std::fill(down_.begin(), down_.end(), 0);
  std::fill(up_.begin(), up_.end(), 0);
  addHits(from_.data() + down.first, rise_.data() + down.first, down.last - down.first, t, slots_, down_.data());
  addHits(from_.data() + up.first, rise_.data() + up.first, up.last - up.first, t, slots_, up_.data());
  sumUp();
  const auto subRows = static_cast<std::size_t>(grid_.subRows);
  const std::size_t entering = static_cast<std::size_t>(kSlotsBeyond + grid_.above) - 1;
  const std::size_t leaving = static_cast<std::size_t>(kSlotsBeyond - grid_.below) - 2;
  std::uint32_t* entered = entered_.data() + border * rows_;
  std::uint32_t* left = left_.data() + border * rows_;
  // Differences of unsigned sums are right even where the sums have run over.
  for (std::size_t row = 0; row < rows_; ++row) {
    const std::size_t in = entering + row * subRows;
    const std::size_t out = leaving + row * subRows;
    entered[row] = (down_[in + subRows] - down_[in]) - (up_[out + subRows] - up_[out]);
    left[row] = (up_[in + subRows] - up_[in]) - (down_[out + subRows] - down_[out]);
  }
}

void LineStrip::addClass(const Colour& colour) {
  const auto subColumns = static_cast<std::size_t>(grid_.subColumns);
  // Upright lines are wider than a narrow column: it takes in its neighbours.
  const std::size_t beyond = subColumns / 4;
  for (std::size_t column = 0; column < columns_ * subColumns; ++column) {
    const std::uint32_t* entered = entered_.data() + (column < beyond ? 0 : column - beyond) * rows_;
    const std::uint32_t* left = left_.data() + std::min(column + 1 + beyond, borders_ - 1) * rows_;
    const std::size_t at = column / subColumns * rows_;
    for (std::size_t row = 0; row < rows_; ++row) {
      const std::uint32_t lines = entered[row] + left[row];
      const auto share = static_cast<float>(lines);
      covered_[at + row] += lines;
      red_[at + row] += share * static_cast<float>(colour.red);
      green_[at + row] += share * static_cast<float>(colour.green);
      blue_[at + row] += share * static_cast<float>(colour.blue);
    }
  }
}

bool LineStrip::count(std::span<const float> from, std::span<const float> to, std::span<const std::uint8_t> classes,
                      const std::vector<Colour>& palette, const Progress& progress) {
  constexpr std::size_t kLinesAReport = 300000;  // a millisecond
  if (columns_ == 0 || rows_ == 0) return true;
  if (!sort(from, to, classes, progress)) return false;
  std::size_t passed = 0;
  for (std::vector<std::uint32_t>* hits : {&down_, &up_}) hits->resize(2 * slots_);
  for (std::vector<std::uint32_t>* sums : {&entered_, &left_}) sums->resize(borders_ * rows_);
  covered_.resize(columns_ * rows_);
  for (std::vector<float>* sums : {&red_, &green_, &blue_}) sums->resize(columns_ * rows_);
  for (std::size_t number = 0; number < kClasses; ++number) {
    const Group& down = groups_[2 * number];
    const Group& up = groups_[2 * number + 1];
    if (down.first == up.last) continue;
    for (std::size_t border = 0; border < borders_; ++border) {
      countBorder(border, down, up);
      passed += up.last - down.first;
      if (passed < kLinesAReport) continue;
      passed = 0;
      const double lines = static_cast<double>(from_.size());
      const double share = static_cast<double>(border + 1) / static_cast<double>(borders_);
      const double before = static_cast<double>(down.first);
      if (!progress.report((before + share * static_cast<double>(up.last - down.first)) / lines)) return false;
    }
    addClass(number < palette.size() ? palette[number] : Colour{});
  }
  return true;
}

void LineStrip::write(int width, std::vector<std::uint32_t>& counts, std::vector<std::uint32_t>& inks) const {
  for (std::size_t column = 0; column < columns_ && !covered_.empty(); ++column)
    for (std::size_t row = 0; row < rows_; ++row) {
      const std::size_t from = column * rows_ + row;
      const std::size_t to = row * static_cast<std::size_t>(width) + static_cast<std::size_t>(first_) + column;
      const std::uint32_t lines = covered_[from];
      if (lines == 0) continue;
      counts[to] = lines;
      inks[to] =
          0xff000000U | byteOf(red_[from], lines) << 16 | byteOf(green_[from], lines) << 8 | byteOf(blue_[from], lines);
    }
}

}  // namespace tarvex
