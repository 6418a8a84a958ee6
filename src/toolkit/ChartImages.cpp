#include "toolkit/ChartImages.h"

#include <cairo.h>

#include <QPainter>
#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>
#include <variant>

#include "plots/CairoStream.h"
#include "plots/ColourSet.h"

namespace tarvex {
namespace {

constexpr std::size_t kLayers = std::size(kFigureLayers);
const std::vector<FigureLayer> kAllLayers(std::begin(kFigureLayers), std::end(kFigureLayers));

bool sameRanges(const std::vector<VisibleRange>& a, const std::vector<VisibleRange>& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const VisibleRange& x, const VisibleRange& y) {
    return x.chart == y.chart && x.axis == y.axis && x.lower == y.lower && x.upper == y.upper;
  });
}

// Calls visit(marks, count of runs) for each set of runs that the figure shows.
template <class Visit>
void visitRuns(Figure& figure, const Visit& visit) {
  for (Chart& chart : figure.charts) {
    if (auto* const cobweb = std::get_if<CobwebChart>(&chart)) visit(cobweb->runs, cobweb->runCount());
    auto* const plane = std::get_if<XyChart>(&chart);
    if (plane == nullptr) continue;
    for (XyChart::Layer& layer : plane->layers)
      if (auto* const points = std::get_if<Points>(&layer))
        visit(points->runs, std::min(points->x.size(), points->y.size()));
  }
}

}  // namespace

ChartImages::ChartImages(Figure figure) : scene_(std::make_shared<Scene>(Scene{std::move(figure)})) {
  static_assert(kLayers == std::tuple_size_v<decltype(layers_)>);
  visitRuns(scene_->figure, [this](const RunMarks& runs, std::size_t) { droppedColour_ = runs.droppedColour; });
}

ChartImages::Scene& ChartImages::change(const std::vector<FigureLayer>& spoiled) {
  ++changes_;
  for (const FigureLayer layer : spoiled) layers_[static_cast<std::size_t>(layer)].ready = false;
  if (scene_.use_count() > 1) {
    scene_ = std::make_shared<Scene>(*scene_);
    scene_->indexed = false;  // it points into the old one
  }
  return *scene_;
}

void ChartImages::setPage(const QSize& size, double ratio, const std::vector<VisibleRange>& visible) {
  const bool samePage = size == size_ && sameRanges(visible, visible_);
  if (samePage && ratio == ratio_) return;
  Scene& scene = change(kAllLayers);
  ratio_ = ratio;
  if (samePage) return;
  size_ = size;
  visible_ = visible;
  scene.indexed = false;
  scene.layout = FigureLayout();
  scene.layout.page = {0.0, 0.0, static_cast<double>(size.width()), static_cast<double>(size.height())};
  if (!size.isEmpty() && hasFont())
    scene.layout = layOut(scene.figure, {scene.layout.page.width, scene.layout.page.height, visible});
}

void ChartImages::setInks(const Inks& inks) {
  if (inks_.page == inks.page && inks_.text == inks.text && inks_.grid == inks.grid) return;
  inks_ = inks;
  visitRuns(change(kAllLayers).figure,
            [this](RunMarks& runs, std::size_t) { runs.droppedColour = isDark(inks_) ? inks_.grid : droppedColour_; });
}

void ChartImages::setMarked(std::vector<std::int32_t> numbers) {
  if (numbers == marked_) return;
  change({FigureLayer::Overlay});
  marked_ = std::move(numbers);
}

void ChartImages::setDropped(const std::vector<std::uint8_t>& dropped, bool showDropped) {
  Scene& scene = change({FigureLayer::Dropped, FigureLayer::Kept, FigureLayer::Overlay});
  visitRuns(scene.figure, [&](RunMarks& runs, std::size_t count) {
    if (!dropped.empty() && dropped.size() != count) return;
    runs.dropped = dropped;
    runs.showDropped = showDropped;
  });
}

void ChartImages::setFilter(std::size_t chart, std::size_t axis,
                            const std::optional<std::pair<double, double>>& filter) {
  if (chart >= scene_->figure.charts.size()) return;
  auto* const cobweb = std::get_if<CobwebChart>(&change({FigureLayer::Overlay}).figure.charts[chart]);
  if (cobweb != nullptr && axis < cobweb->axes.size()) cobweb->axes[axis].filter = filter;
}

void ChartImages::setRegion(std::size_t chart, const std::array<double, 4>& bounds) {
  if (chart >= scene_->figure.charts.size()) return;
  auto* const plane = std::get_if<XyChart>(&change({FigureLayer::Overlay}).figure.charts[chart]);
  if (plane == nullptr) return;
  const auto on = [](const Axis& axis, double value) {
    return axis.scale == AxisScale::Logarithms ? std::log(value) : value;
  };
  for (XyChart::Layer& layer : plane->layers) {
    auto* const region = std::get_if<Region>(&layer);
    if (region == nullptr) continue;
    region->lowerX = on(plane->x, bounds[0]);
    region->upperX = on(plane->x, bounds[1]);
    region->lowerY = on(plane->y, bounds[2]);
    region->upperY = on(plane->y, bounds[3]);
  }
}

bool ChartImages::isReady() const {
  return std::all_of(layers_.begin(), layers_.end(), [](const Layer& layer) { return layer.ready; });
}

QImage ChartImages::drawn(const Scene& scene, FigureLayer layer, const Progress& progress) const {
  const QSize pixels(static_cast<int>(std::ceil(size_.width() * ratio_)),
                     static_cast<int>(std::ceil(size_.height() * ratio_)));
  QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
  if (image.isNull()) return {};
  image.fill(Qt::transparent);
  image.setDevicePixelRatio(ratio_);
  const DrawOptions options{Surface::Screen, ratio_, inks_, marked_};
  const double ratio = ratio_;
  bool complete = false;
  {
    const CairoSurface surface(cairo_image_surface_create_for_data(
        image.bits(), CAIRO_FORMAT_ARGB32, image.width(), image.height(), static_cast<int>(image.bytesPerLine())));
    cairo_surface_set_device_scale(surface.get(), ratio, ratio);
    const CairoContext context(cairo_create(surface.get()));
    complete = drawLayer(context.get(), scene.figure, scene.layout, layer, options, progress);
    cairo_surface_flush(surface.get());
  }
  return complete ? image : QImage();
}

bool ChartImages::draw(const Progress& progress) {
  if (size_.isEmpty()) return true;
  const std::shared_ptr<const Scene> scene = scene_;  // keeps it as it is while events are served
  for (std::size_t i = 0; i < kLayers; ++i) {
    if (layers_[i].ready) continue;
    const int before = changes_;
    QImage image = drawn(*scene, kFigureLayers[i],
                         progress.part(static_cast<double>(i) / kLayers, static_cast<double>(i + 1) / kLayers));
    if (progress.stopped() || changes_ != before) return false;
    layers_[i] = {std::move(image), true};
  }
  return true;
}

void ChartImages::paint(QPainter& painter) const {
  for (const Layer& layer : layers_) {
    if (layer.image.isNull()) continue;
    // Pixel by pixel; an image that is to be drawn again is stretched meanwhile.
    const QSizeF size = layer.ready ? layer.image.deviceIndependentSize() : QSizeF(size_);
    painter.drawImage(QRectF({0.0, 0.0}, size), layer.image);
  }
}

std::optional<Hit> ChartImages::hit(double x, double y, double reach) {
  if (!scene_->indexed) {
    scene_->index = FigureIndex();
    scene_->indexed = scene_->index.build(scene_->figure, scene_->layout);
  }
  return scene_->index.hit(x, y, reach);
}

}  // namespace tarvex
