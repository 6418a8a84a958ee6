#include "plots/PixelLayer.h"

#include <cairo.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>

#include "plots/Canvas.h"

namespace tarvex {

namespace {

constexpr double kMostPixels = 30e6;      // 100 MB; larger layers get a lower resolution
constexpr double kLongestSide = 32000.0;  // cairo's own limit, rounded down
constexpr std::uint32_t kFull = 255;
// Opacity of a single disc where many meet: alone it must still be seen.
constexpr double kSingleDisc = 0.6;
// Discs stand at quarters of a pixel.
constexpr int kPhases = 4;
constexpr int kSamples = 4;  // of a pixel's coverage, across
// In files a pixel is there or not; fainter edges than this are not.
constexpr std::uint32_t kLeastAlpha = 40;

double resolution(const Rect& area, double wanted) {
  const double byCount = std::sqrt(kMostPixels / std::max(area.width * area.height, 1.0));
  const double bySide = kLongestSide / std::max({area.width, area.height, 1.0});
  return std::min({wanted, byCount, bySide});
}

// How much of each pixel a disc covers, of kFull, for its centre at each quarter of its pixel.
class DiscMasks {
 public:
  explicit DiscMasks(double radius) : reach_(static_cast<int>(std::ceil(radius))), side_(2 * reach_ + 1) {
    for (int phase = 0; phase < kPhases * kPhases; ++phase) {
      std::vector<std::uint8_t>& mask = masks_[static_cast<std::size_t>(phase)];
      const double centreX = reach_ + (phase % kPhases + 0.5) / kPhases;
      const double centreY = reach_ + (phase / kPhases + 0.5) / kPhases;
      for (int y = 0; y < side_; ++y) {
        for (int x = 0; x < side_; ++x) mask.push_back(coverage(x - centreX, y - centreY, radius));
      }
    }
  }

  int reach() const { return reach_; }
  int side() const { return side_; }
  const std::uint8_t* at(double fractionX, double fractionY) const {
    const int phase = static_cast<int>(fractionY * kPhases) * kPhases + static_cast<int>(fractionX * kPhases);
    return masks_[static_cast<std::size_t>(phase)].data();
  }

 private:
  static std::uint8_t coverage(double left, double top, double radius) {
    int inside = 0;
    for (int sample = 0; sample < kSamples * kSamples; ++sample) {
      const double x = left + (sample % kSamples + 0.5) / kSamples;
      const double y = top + (sample / kSamples + 0.5) / kSamples;
      if (x * x + y * y <= radius * radius) ++inside;
    }
    return static_cast<std::uint8_t>(inside * static_cast<int>(kFull) / (kSamples * kSamples));
  }

  int reach_, side_;
  std::array<std::vector<std::uint8_t>, kPhases * kPhases> masks_;
};

// Opaque, as cairo's ARGB32.
std::uint32_t inkOf(const Colour& colour) {
  constexpr std::uint32_t kByte = 257;  // 65535 becomes 255
  return kFull << 24 | colour.red / kByte << 16 | colour.green / kByte << 8 | colour.blue / kByte;
}

// Two channels at once, each in the lower byte of a half: what stands there, times the weights, over 255.
std::uint32_t mixed(std::uint32_t over, std::uint32_t under, std::uint32_t alpha) {
  constexpr std::uint32_t kChannels = 0x00ff00ff;
  constexpr std::uint32_t kHalf = 0x00800080;
  const std::uint32_t sum = (over & kChannels) * alpha + (under & kChannels) * (kFull - alpha) + kHalf;
  return (sum + (sum >> 8 & kChannels)) >> 8 & kChannels;
}

void cover(std::uint32_t& pixel, std::uint32_t ink, std::uint32_t alpha) {
  pixel = mixed(ink >> 8, pixel >> 8, alpha) << 8 | mixed(ink, pixel, alpha);
}

}  // namespace

PixelLayer::PixelLayer(Canvas& canvas, const Rect& area)
    : canvas_(canvas), perUnit_(resolution(area, canvas.pixelsPerUnit())) {
  // On the pixels of the surface itself, so that none is blurred over two.
  x_ = std::floor(area.x * perUnit_) / perUnit_;
  y_ = std::floor(area.y * perUnit_) / perUnit_;
  width_ = std::max(1, static_cast<int>(std::ceil((area.right() - x_) * perUnit_)));
  height_ = std::max(1, static_cast<int>(std::ceil((area.bottom() - y_) * perUnit_)));
  pixels_.resize(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_));
}

void PixelLayer::addDiscs(const std::vector<std::pair<double, double>>& places, double radius, const Colour& colour) {
  const DiscMasks masks(radius * perUnit_);
  std::vector<std::uint32_t> hits(pixels_.size());
  for (const auto& [x, y] : places) {
    const double left = (x - x_) * perUnit_;
    const double top = (y - y_) * perUnit_;
    if (!(left >= 0.0 && top >= 0.0 && left < width_ && top < height_)) continue;
    const int column = static_cast<int>(left);
    const int row = static_cast<int>(top);
    const std::uint8_t* mask = masks.at(left - column, top - row);
    const int fromX = std::max(0, masks.reach() - column);
    const int toX = std::min(masks.side(), width_ - column + masks.reach());
    for (int my = 0; my < masks.side(); ++my) {
      const int py = row - masks.reach() + my;
      if (py < 0 || py >= height_) continue;
      const std::size_t line = static_cast<std::size_t>(py) * static_cast<std::size_t>(width_);
      std::uint32_t* out = hits.data() + line + static_cast<std::size_t>(column - masks.reach() + fromX);
      for (int mx = fromX; mx < toX; ++mx) *out++ += mask[my * masks.side() + mx];
    }
  }
  const double most = std::log(std::max<double>(*std::max_element(hits.begin(), hits.end()) / kFull, 2.0));
  const std::uint32_t ink = inkOf(colour);
  for (std::size_t pixel = 0; pixel < hits.size(); ++pixel) {
    if (hits[pixel] == 0) continue;
    const double discs = static_cast<double>(hits[pixel]) / kFull;
    const double opacity =
        discs <= 1.0 ? discs * kSingleDisc : std::min(1.0, kSingleDisc + (1.0 - kSingleDisc) * std::log(discs) / most);
    cover(pixels_[pixel], ink, static_cast<std::uint32_t>(opacity * kFull));
  }
}

// The part between two positions of the column (steep: the row) number `step`. In files whole pixels of the ink alone:
// at print's resolution no edge is seen, and mixed colours, of which each pixel has another, would make files large.
void PixelLayer::coverSpan(int step, double from, double to, bool steep, std::uint32_t ink, double alpha) {
  const int limit = steep ? width_ : height_;
  if (canvas_.isVector()) {
    const double whole = std::max(1.0, std::round(to - from));
    from = std::round(from + (to - from - whole) / 2.0);
    to = from + whole - 0.5;
  }
  const int first = std::max(0, static_cast<int>(std::floor(from)));
  const int last = std::min(limit - 1, static_cast<int>(std::floor(to)));
  for (int at = first; at <= last; ++at) {
    const auto row = static_cast<std::size_t>(steep ? step : at);
    const auto column = static_cast<std::size_t>(steep ? at : step);
    std::uint32_t& pixel = pixels_[row * static_cast<std::size_t>(width_) + column];
    const double part = std::min(to, at + 1.0) - std::max(from, static_cast<double>(at));
    if (canvas_.isVector())
      pixel = ink;
    else
      cover(pixel, ink, static_cast<std::uint32_t>(part * alpha));
  }
}

void PixelLayer::addLine(double x0, double y0, double x1, double y1, double width, const Colour& colour,
                         double opacity) {
  const Rect all{0.0, 0.0, static_cast<double>(width_), static_cast<double>(height_)};
  x0 = (x0 - x_) * perUnit_;
  x1 = (x1 - x_) * perUnit_;
  y0 = (y0 - y_) * perUnit_;
  y1 = (y1 - y_) * perUnit_;
  if (!clipLine(all, x0, y0, x1, y1)) return;
  const std::uint32_t ink = inkOf(colour);
  inks_[ink] = colour;
  const double alpha = opacity * kFull;
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
    coverSpan(step, middle - half, middle + half, steep, ink, alpha);
  }
}

// PostScript knows no translucent images: a pixel is opaque or not there at all.
void PixelLayer::composeOnWhite() {
  for (std::uint32_t& pixel : pixels_) {
    const std::uint32_t alpha = pixel >> 24;
    const std::uint32_t white = kFull - alpha;
    pixel = alpha < kLeastAlpha ? 0 : (pixel + white * 0x010101U) | 0xff000000U;
  }
}

void PixelLayer::paint() {
  const SavedState state(canvas_.context());
  cairo_translate(canvas_.context(), x_, y_);
  cairo_scale(canvas_.context(), 1.0 / perUnit_, 1.0 / perUnit_);
  if (inks_.empty() || !canvas_.isVector()) {
    if (canvas_.isVector()) composeOnWhite();
    paintImage(pixels_.data(), CAIRO_FORMAT_ARGB32, static_cast<int>(sizeof(std::uint32_t)) * width_);
    return;
  }
  for (const auto& [ink, colour] : inks_) {
    canvas_.setColour(colour);
    paintMask(ink);
  }
}

// All pixels that are left, in the current colour: a bit each, which files hold tightly and soon. Those of the ink are
// then done; the others lie above them, so that no white shows between neighbours where the image is shrunk.
void PixelLayer::paintMask(std::uint32_t ink) {
  const int stride = cairo_format_stride_for_width(CAIRO_FORMAT_A1, width_);
  std::vector<std::uint32_t> bits(static_cast<std::size_t>(stride) / sizeof(std::uint32_t) *
                                  static_cast<std::size_t>(height_));
  constexpr std::size_t kWord = 32;
  std::uint32_t* pixel = pixels_.data();
  for (int row = 0; row < height_; ++row) {
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
