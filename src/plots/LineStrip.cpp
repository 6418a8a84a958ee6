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
// Borders counted at a time: their sums take vector instructions, and where all lines meet, an addition needn't wait
// for the one before. With more of them the tables leave the processor's nearest memory.
constexpr std::size_t kTogether = 2;
constexpr std::size_t kBlock = 64;  // lines at a time: the arithmetic of a block takes vector instructions

// A line's slot at share `t` of its way.
template <bool isClamped>
std::int32_t slotAt(float from, float rise, float t, float most) {
  const float slot = from + rise * t;
  if constexpr (!isClamped) return static_cast<std::int32_t>(slot);
  const float low = slot > 0.0F ? slot : 0.0F;
  return static_cast<std::int32_t>(low < most ? low : most);
}

// Counts the lines by their slots at the shares of their way, one table for each share, slot by slot.
template <bool isClamped>
void addHits(const float* from, const float* rise, std::size_t count, const std::array<float, kTogether>& shares,
             std::size_t slots, std::uint32_t* hits) {
  const float most = static_cast<float>(slots - 1);
  std::array<std::array<std::int32_t, kBlock>, kTogether> at;
  std::size_t i = 0;
  for (; i + kBlock <= count; i += kBlock) {
    for (std::size_t table = 0; table < kTogether; ++table)
      for (std::size_t k = 0; k < kBlock; ++k)
        at[table][k] = slotAt<isClamped>(from[i + k], rise[i + k], shares[table], most);
    for (std::size_t k = 0; k < kBlock; ++k)
      for (std::size_t table = 0; table < kTogether; ++table)
        ++hits[static_cast<std::size_t>(at[table][k]) * kTogether + table];
  }
  for (; i < count; ++i)
    for (std::size_t table = 0; table < kTogether; ++table)
      ++hits[static_cast<std::size_t>(slotAt<isClamped>(from[i], rise[i], shares[table], most)) * kTogether + table];
}

// Whether all lines stay among the slots, and a slot away from the outermost, on all of their way.
bool stayAmong(const float* from, const float* rise, std::size_t count, std::size_t slots) {
  const float most = static_cast<float>(slots - 2);
  std::uint32_t others = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const float to = from[i] + rise[i];
    others |= static_cast<std::uint32_t>(from[i] < 1.0F) | static_cast<std::uint32_t>(from[i] > most) |
              static_cast<std::uint32_t>(to < 1.0F) | static_cast<std::uint32_t>(to > most);
  }
  return others == 0;
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
  for (Group& group : groups_)
    group.isClamped =
        !stayAmong(from_.data() + group.first, rise_.data() + group.first, group.last - group.first, slots_);
  return here.report(0.0);
}

// From hits to how many lie in this slot or before it, summed over the slots so far. All in one loop: each sum waits
// for the one before.
void LineStrip::sumUp() {
  std::array<std::uint32_t, kTogether> linesDown{}, linesUp{}, sumDown{}, sumUp{};
  std::uint32_t* down = down_.data();
  std::uint32_t* up = up_.data();
  for (std::size_t slot = 0; slot < slots_; ++slot, down += kTogether, up += kTogether) {
    for (std::size_t table = 0; table < kTogether; ++table) linesDown[table] += down[table];
    for (std::size_t table = 0; table < kTogether; ++table) sumDown[table] += linesDown[table];
    for (std::size_t table = 0; table < kTogether; ++table) down[table] = sumDown[table];
    for (std::size_t table = 0; table < kTogether; ++table) linesUp[table] += up[table];
    for (std::size_t table = 0; table < kTogether; ++table) sumUp[table] += linesUp[table];
    for (std::size_t table = 0; table < kTogether; ++table) up[table] = sumUp[table];
  }
}

void LineStrip::countBorders(std::size_t border, const Group& down, const Group& up) {
  std::array<float, kTogether> shares{};
  for (std::size_t table = 0; table < kTogether; ++table) {
    const double x = first_ + static_cast<double>(border + table) / grid_.subColumns;
    shares[table] = static_cast<float>(std::clamp((x - fromX_) / (toX_ - fromX_), 0.0, 1.0));
  }
  std::fill(down_.begin(), down_.end(), 0);
  std::fill(up_.begin(), up_.end(), 0);
  const auto add = [&](const Group& group, std::uint32_t* hits) {
    const auto addAll = group.isClamped ? addHits<true> : addHits<false>;
    addAll(from_.data() + group.first, rise_.data() + group.first, group.last - group.first, shares, slots_, hits);
  };
  add(down, down_.data());
  add(up, up_.data());
  sumUp();
  const std::size_t step = static_cast<std::size_t>(grid_.subRows) * kTogether;
  const std::size_t entering = (static_cast<std::size_t>(kSlotsBeyond + grid_.above) - 1) * kTogether;
  const std::size_t leaving = (static_cast<std::size_t>(kSlotsBeyond - grid_.below) - 2) * kTogether;
  for (std::size_t table = 0; table < kTogether && border + table < borders_; ++table) {
    std::uint32_t* entered = entered_.data() + (border + table) * rows_;
    std::uint32_t* left = left_.data() + (border + table) * rows_;
    // Differences of unsigned sums are right even where the sums have run over.
    for (std::size_t row = 0; row < rows_; ++row) {
      const std::size_t in = entering + row * step + table;
      const std::size_t out = leaving + row * step + table;
      entered[row] = (down_[in + step] - down_[in]) - (up_[out + step] - up_[out]);
      left[row] = (up_[in + step] - up_[in]) - (down_[out + step] - down_[out]);
    }
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
  for (std::vector<std::uint32_t>* hits : {&down_, &up_}) hits->resize(kTogether * slots_);
  for (std::vector<std::uint32_t>* sums : {&entered_, &left_}) sums->resize(borders_ * rows_);
  covered_.resize(columns_ * rows_);
  for (std::vector<float>* sums : {&red_, &green_, &blue_}) sums->resize(columns_ * rows_);
  for (std::size_t number = 0; number < kClasses; ++number) {
    const Group& down = groups_[2 * number];
    const Group& up = groups_[2 * number + 1];
    if (down.first == up.last) continue;
    for (std::size_t border = 0; border < borders_; border += kTogether) {
      countBorders(border, down, up);
      passed += kTogether * (up.last - down.first);
      if (passed < kLinesAReport) continue;
      passed = 0;
      const double lines = static_cast<double>(from_.size());
      const double share = static_cast<double>(border) / static_cast<double>(borders_);
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
