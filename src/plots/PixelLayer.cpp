#include "plots/PixelLayer.h"

#include <cairo.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <utility>

#include "base/zerosWatched.h"
#include "plots/Canvas.h"
#include "plots/DiscCounts.h"
#include "plots/LineCounts.h"

namespace tarvex {

namespace {

constexpr double kMostPixels = 30e6;      // 100 MB; larger layers get a lower resolution
constexpr double kLongestSide = 32000.0;  // cairo's own limit, rounded down
constexpr std::size_t kPixelsAReport = std::size_t{1} << 20;
constexpr std::uint32_t kFull = 255;
// In files a pixel is there or not; fainter edges than this are not.
constexpr std::uint32_t kLeastAlpha = 16;

double resolution(const Rect& area, double wanted) {
  const double byCount = std::sqrt(kMostPixels / std::max(area.width * area.height, 1.0));
  const double bySide = kLongestSide / std::max({area.width, area.height, 1.0});
  return std::min({wanted, byCount, bySide});
}

// Opaque, as cairo's ARGB32.
std::uint32_t inkOf(const Colour& colour) {
  constexpr std::uint32_t kByte = 257;  // 65535 becomes 255
  return kFull << 24 | colour.red / kByte << 16 | colour.green / kByte << 8 | colour.blue / kByte;
}

// The largest of them. After a stop of what is counted so far: the next report is answered by false, too.
std::uint32_t largestOf(const std::vector<std::uint32_t>& counts, const Progress& progress) {
  const Progress looking = progress.part(0.0, 0.0);
  std::uint32_t largest = 0;
  for (std::size_t pixel = 0; pixel < counts.size(); ++pixel) {
    if (pixel % kPixelsAReport == 0 && !looking.report(0.0)) break;
    largest = std::max(largest, counts[pixel]);
  }
  return largest;
}

// Two channels at once, each in the lower byte of a half: what stands there, times the weights, over 255.
std::uint32_t mixed(std::uint32_t over, std::uint32_t under, std::uint32_t alpha) {
  constexpr std::uint32_t kChannels = 0x00ff00ff;
  constexpr std::uint32_t kHalf = 0x00800080;
  const std::uint32_t sum = (over & kChannels) * alpha + (under & kChannels) * (kFull - alpha) + kHalf;
  return (sum + (sum >> 8 & kChannels)) >> 8 & kChannels;
}

void mix(std::uint32_t& pixel, std::uint32_t ink, std::uint32_t alpha) {
  pixel = mixed(ink >> 8, pixel >> 8, alpha) << 8 | mixed(ink, pixel, alpha);
}

constexpr std::uint32_t kMostKnown = 1 << 16;  // counts whose logarithms are taken once

// The opacity of a pixel by how many discs or lines cover it, in parts: what one adds to a pixel that it covers whole.
class Opacities {
 public:
  Opacities(std::uint32_t most, std::uint32_t parts, double single) : parts_(parts), single_(single) {
    most_ = std::log(std::max<double>(static_cast<double>(most) / parts, 2.0));
    const std::uint32_t size = std::min(most, kMostKnown) + 1;
    for (std::uint32_t count = 0; count < size; ++count) known_.push_back(compute(count));
  }

  // Of kFull.
  std::uint32_t operator()(std::uint32_t count) const { return count < known_.size() ? known_[count] : compute(count); }

 private:
  std::uint8_t compute(std::uint32_t count) const {
    const double covers = static_cast<double>(count) / parts_;
    const double opacity =
        covers <= 1.0 ? covers * single_ : std::min(1.0, single_ + (1.0 - single_) * std::log(covers) / most_);
    return static_cast<std::uint8_t>(opacity * kFull);
  }

  std::uint32_t parts_;
  double single_, most_;  // the logarithm of the most that cover a pixel
  std::vector<std::uint8_t> known_;
};

}  // namespace

PixelLayer::PixelLayer(Canvas& canvas, const Rect& area, const Progress& progress)
    : canvas_(canvas), perUnit_(resolution(area, canvas.pixelsPerUnit())) {
  // On the pixels of the surface itself, so that none is blurred over two.
  x_ = std::floor(area.x * perUnit_) / perUnit_;
  y_ = std::floor(area.y * perUnit_) / perUnit_;
  width_ = std::max(1, static_cast<int>(std::ceil((area.right() - x_) * perUnit_)));
  height_ = std::max(1, static_cast<int>(std::ceil((area.bottom() - y_) * perUnit_)));
  // Whoever covers or paints asks the same progress first.
  static_cast<void>(
      zerosWatched(pixels_, static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_), progress));
}

// Mixes ink into each pixel that is covered.
template <class InkAt, class Opacity>
bool PixelLayer::mixAll(const std::vector<std::uint32_t>& counts, InkAt inkAt, const Opacity& opacity,
                        const Progress& progress) {
  for (std::size_t pixel = 0; pixel < counts.size(); ++pixel) {
    if (pixel % kPixelsAReport == 0 && !progress.report(pixel, counts.size())) return false;
    if (counts[pixel] != 0) mix(pixels_[pixel], inkAt(pixel), opacity(counts[pixel]));
  }
  return progress.report(1.0);
}

bool PixelLayer::cover(const DiscCounts& discs, const Colour& colour, double single, const Progress& progress) {
  const std::vector<std::uint32_t>& counts = discs.counts();
  const Opacities opacities(largestOf(counts, progress), DiscCounts::kFull, single);
  const std::uint32_t ink = inkOf(colour);
  return mixAll(
      counts, [ink](std::size_t) { return ink; }, opacities, progress);
}

bool PixelLayer::cover(const DiscCounts& discs, const std::vector<Colour>& colours, const Progress& progress) {
  const std::vector<std::uint32_t>& counts = discs.counts();
  const std::uint32_t most = largestOf(counts, progress);
  const double logMost = std::log(std::max(static_cast<double>(most) / DiscCounts::kFull, 2.0));
  std::vector<std::uint32_t> inks;
  for (const Colour& colour : colours) inks.push_back(inkOf(colour));
  const auto last = static_cast<double>(inks.size() - 1);
  const auto inkFor = [&](std::uint32_t count) {
    const double met = static_cast<double>(count) / DiscCounts::kFull;
    return met <= 1.0 ? inks.front() : inks[static_cast<std::size_t>(std::min(std::log(met) / logMost, 1.0) * last)];
  };
  std::vector<std::uint32_t> known(std::min(most, kMostKnown) + 1);
  for (std::uint32_t count = 0; count < known.size(); ++count) known[count] = inkFor(count);
  const auto inkAt = [&](std::size_t pixel) {
    const std::uint32_t count = counts[pixel];
    return count < known.size() ? known[count] : inkFor(count);
  };
  // A disc's edge is faint, what lies further in is opaque.
  const auto opacity = [](std::uint32_t count) { return std::min<std::uint32_t>(count, kFull); };
  return mixAll(counts, inkAt, opacity, progress);
}

bool PixelLayer::cover(const LineCounts& lines, double single, const Progress& progress) {
  const std::vector<std::uint32_t>& counts = lines.counts();
  const Opacities opacities(largestOf(counts, progress), lines.parts(), single);
  return mixAll(
      counts, [&lines](std::size_t pixel) { return lines.inks()[pixel]; }, opacities, progress);
}

// The part between two positions of the column (steep: the row) number `step`. Whole pixels of the ink alone: at
// print's resolution no edge is seen, and mixed colours, of which each pixel has another, would make files large.
void PixelLayer::inkSpan(int step, double from, double to, bool steep, std::uint32_t ink) {
  const double whole = std::max(1.0, std::round(to - from));
  const double start = std::round(from + (to - from - whole) / 2.0);
  const int first = std::max(0, static_cast<int>(start));
  const int last = std::min((steep ? width_ : height_) - 1, static_cast<int>(std::floor(start + whole - 0.5)));
  for (int at = first; at <= last; ++at) {
    const auto row = static_cast<std::size_t>(steep ? step : at);
    const auto column = static_cast<std::size_t>(steep ? at : step);
    pixels_[row * static_cast<std::size_t>(width_) + column] = ink;
  }
}

void PixelLayer::addLine(double x0, double y0, double x1, double y1, double width, const Colour& colour) {
  const Rect all{0.0, 0.0, static_cast<double>(width_), static_cast<double>(height_)};
  x0 = pixelX(x0);
  x1 = pixelX(x1);
  y0 = pixelY(y0);
  y1 = pixelY(y1);
  if (!clipLine(all, x0, y0, x1, y1)) return;
  const std::uint32_t ink = inkOf(colour);
  inks_[ink] = colour;
  // One step a pixel along the axis on which it goes further, and a span across it.
  const bool steep = std::abs(y1 - y0) > std::abs(x1 - x0);
  if (steep) {
    std::swap(x0, y0);
    std::swap(x1, y1);
  }
  if (x0 > x1) {
    std::swap(x0, x1);
    std::swap(y0, y1);
  }
  const double slope = x1 > x0 ? (y1 - y0) / (x1 - x0) : 0.0;
  const double half = std::max(width * perUnit_, 1.0) / 2.0;
  const int first = static_cast<int>(x0);
  const int last = std::min(static_cast<int>(x1), (steep ? height_ : width_) - 1);
  for (int step = first; step <= last; ++step) {
    const double middle = y0 + (std::clamp(step + 0.5, x0, x1) - x0) * slope;
    inkSpan(step, middle - half, middle + half, steep, ink);
  }
}

// PostScript knows no translucent images: a pixel is opaque or not there at all.
bool PixelLayer::composeOnWhite(const Progress& progress) {
  for (std::size_t i = 0; i < pixels_.size(); ++i) {
    if (i % kPixelsAReport == 0 && !progress.report(i, pixels_.size())) return false;
    std::uint32_t& pixel = pixels_[i];
    const std::uint32_t alpha = pixel >> 24;
    const std::uint32_t white = kFull - alpha;
    pixel = alpha < kLeastAlpha ? 0 : (pixel + white * 0x010101U) | 0xff000000U;
  }
  return progress.report(1.0);
}

bool PixelLayer::paint(const Progress& progress) {
  const SavedState state(canvas_.context());
  cairo_translate(canvas_.context(), x_, y_);
  cairo_scale(canvas_.context(), 1.0 / perUnit_, 1.0 / perUnit_);
  if (inks_.empty() || !canvas_.isVector()) {
    if (canvas_.isVector() && !composeOnWhite(progress)) return false;
    paintImage(pixels_.data(), CAIRO_FORMAT_ARGB32, static_cast<int>(sizeof(std::uint32_t)) * width_);
    return progress.report(1.0);
  }
  const double share = 1.0 / static_cast<double>(inks_.size());
  double done = 0.0;
  for (const auto& [ink, colour] : inks_) {
    canvas_.setColour(colour);
    if (!paintMask(ink, progress.part(done, done + share))) return false;
    done += share;
  }
  return true;
}

// All pixels that are left, in the current colour: a bit each, which files hold tightly and soon. Those of the ink are
// then done; the others lie above them, so that no white shows between neighbours where the image is shrunk.
bool PixelLayer::paintMask(std::uint32_t ink, const Progress& progress) {
  constexpr int kRowsAReport = 200;
  const int stride = cairo_format_stride_for_width(CAIRO_FORMAT_A1, width_);
  std::vector<std::uint32_t> bits(static_cast<std::size_t>(stride) / sizeof(std::uint32_t) *
                                  static_cast<std::size_t>(height_));
  constexpr std::size_t kWord = 32;
  std::uint32_t* pixel = pixels_.data();
  for (int row = 0; row < height_; ++row) {
    if (row % kRowsAReport == 0 && !progress.report(row, height_)) return false;
    std::uint32_t* words =
        bits.data() + static_cast<std::size_t>(row) * static_cast<std::size_t>(stride) / sizeof(std::uint32_t);
    for (std::size_t column = 0; column < static_cast<std::size_t>(width_); ++column, ++pixel) {
      if (*pixel == 0) continue;
      const std::size_t bit = column % kWord;
      words[column / kWord] |= 1U << (std::endian::native == std::endian::little ? bit : kWord - 1 - bit);
      if (*pixel == ink) *pixel = 0;
    }
  }
  paintImage(bits.data(), CAIRO_FORMAT_A1, stride);
  return progress.report(1.0);
}

void PixelLayer::paintImage(std::uint32_t* data, int format, int stride) {
  cairo_surface_t* image = cairo_image_surface_create_for_data(
      reinterpret_cast<unsigned char*>(data), static_cast<cairo_format_t>(format), width_, height_, stride);
  cairo_t* context = canvas_.context();
  cairo_pattern_t* pattern = cairo_pattern_create_for_surface(image);
  cairo_pattern_set_filter(pattern, CAIRO_FILTER_NEAREST);
  if (format == CAIRO_FORMAT_A1) {
    cairo_mask(context, pattern);
  } else {
    // A rectangle, not the whole page: it bounds the image in a file.
    cairo_set_source(context, pattern);
    cairo_rectangle(context, 0.0, 0.0, width_, height_);
    cairo_fill(context);
  }
  cairo_pattern_destroy(pattern);
  // The file may take the image only at the end of the page, when our pixels are gone: finishing the surface makes it
  // keep a copy.
  cairo_surface_finish(image);
  cairo_surface_destroy(image);
}

}  // namespace tarvex
