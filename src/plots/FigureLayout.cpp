#include "plots/FigureLayout.h"

#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "plots/CairoStream.h"
#include "plots/Figure.h"
#include "plots/Metrics.h"

namespace tarvex {

namespace {

constexpr double kPageMargin = 10.0;
constexpr double kChartGap = 18.0;
// Below this size of a chart, texts and marks shrink with it; no further than what can still be read.
constexpr double kFullWidth = 380.0;
constexpr double kFullHeight = 260.0;
constexpr double kLeastScale = 0.62;
// Shares of the height that titles and the legend take at most.
constexpr double kTitleShare = 0.25;
constexpr double kLegendShare = 0.3;

using Range = std::pair<double, double>;
constexpr Range kWhole = {0.0, 0.0};

// The context on which texts are measured: their extents are the same on every surface.
class MeasuringContext {
 public:
  MeasuringContext()
      : surface_(cairo_image_surface_create(CAIRO_FORMAT_A8, 1, 1)), context_(cairo_create(surface_.get())) {}
  cairo_t* get() const { return context_.get(); }

 private:
  CairoSurface surface_;
  CairoContext context_;
};

std::size_t columnsOf(const Figure& figure) {
  return std::min<std::size_t>(static_cast<std::size_t>(std::max(figure.columns, 1)),
                               std::max<std::size_t>(figure.charts.size(), 1));
}

std::size_t rowsOf(const Figure& figure) {
  const std::size_t columns = columnsOf(figure);
  return std::max<std::size_t>((figure.charts.size() + columns - 1) / columns, 1);
}

double scaleFor(const Figure& figure, const Rect& page) {
  const double width = page.width / static_cast<double>(columnsOf(figure));
  const double height = page.height / static_cast<double>(rowsOf(figure));
  return std::clamp(std::min(width / kFullWidth, height / kFullHeight), kLeastScale, 1.0);
}

// Title and subtitle, as far as they have room. Cuts what they take off `area`.
void placeTitles(Metrics& metrics, const Figure& figure, Rect& area, FigureLayout& layout) {
  const double room = area.height * kTitleShare;
  double taken = 0.0;
  const auto place = [&](const std::string& text, const TextStyle& style, bool sub) {
    const double height = metrics.pen().height(style);
    if (text.empty() || taken + height > room) return;
    layout.titles.push_back({{area.x, area.y + taken, area.width, height}, sub});
    taken += height;
  };
  place(figure.title, metrics.titleStyle(), false);
  place(figure.subtitle, metrics.bodyStyle(), true);
  if (taken > 0.0) taken += metrics.gap();
  area.y += taken;
  area.height -= taken;
}

void placeLegend(Metrics& metrics, const Figure& figure, Rect& area, FigureLayout& layout) {
  layout.legend = layOutLegend(metrics, figure.legend, area.width, area.height * kLegendShare);
  if (layout.legend.height == 0.0) return;
  layout.legend.move(area.x, area.bottom() - layout.legend.height);
  area.height -= layout.legend.height + metrics.gap();
}

// What the options want to be seen of the axes of one chart.
class Visible {
 public:
  Visible(const std::vector<VisibleRange>& ranges, std::size_t chart) : ranges_(ranges), chart_(chart) {}

  Range of(std::size_t axis) const {
    Range found = kWhole;
    for (const VisibleRange& range : ranges_)
      if (range.chart == chart_ && range.axis == axis && std::isfinite(range.lower) && std::isfinite(range.upper))
        found = {range.lower, range.upper};
    return found;
  }
  Axis of(std::size_t number, Axis axis) const {
    const auto [lower, upper] = of(number);
    if (!(lower < upper)) return axis;
    axis.lower = lower;
    axis.upper = upper;
    return axis;
  }

 private:
  const std::vector<VisibleRange>& ranges_;
  std::size_t chart_;
};

// Lays out a chart of whatever kind.
struct ChartPlacer {
  Metrics& metrics;
  Rect area;
  Visible visible;

  ChartLayout operator()(const XyChart& chart) const {
    return layOutChart(metrics, area, chart, visible.of(0, chart.x), visible.of(1, chart.y));
  }
  ChartLayout operator()(const CobwebChart& chart) const {
    std::vector<Range> ranges;
    for (std::size_t axis = 0; axis < chart.axes.size(); ++axis) ranges.push_back(visible.of(axis));
    return layOutChart(metrics, area, chart, ranges);
  }
  ChartLayout operator()(const BarChart& chart) const { return layOutChart(metrics, area, chart, visible.of(0)); }
  ChartLayout operator()(const PieChart& chart) const { return layOutChart(metrics, area, chart); }
};

void placeCharts(Metrics& metrics, const Figure& figure, const Rect& area, const LayoutOptions& options,
                 FigureLayout& layout) {
  const std::size_t columns = columnsOf(figure);
  const auto across = static_cast<double>(columns);
  const auto down = static_cast<double>(rowsOf(figure));
  const double gap = kChartGap * metrics.scale();
  const double width = (area.width - gap * (across - 1.0)) / across;
  const double height = (area.height - gap * (down - 1.0)) / down;
  if (!(width > 1.0 && height > 1.0)) return;
  for (std::size_t i = 0; i < figure.charts.size(); ++i) {
    const Rect cell{area.x + static_cast<double>(i % columns) * (width + gap),
                    area.y + static_cast<double>(i / columns) * (height + gap), width, height};
    layout.charts.push_back(std::visit(ChartPlacer{metrics, cell, Visible(options.visible, i)}, figure.charts[i]));
  }
}

}  // namespace

FigureLayout layOut(const Figure& figure, const LayoutOptions& options) {
  FigureLayout layout;
  layout.page.width = options.width > 0.0 ? options.width : figure.width;
  layout.page.height = options.height > 0.0 ? options.height : figure.height;
  if (layout.page.empty()) return layout;
  layout.scale = scaleFor(figure, layout.page);
  const MeasuringContext context;
  Metrics metrics(context.get(), layout.scale, figure.font);
  Rect area = layout.page.grown(-std::min(kPageMargin, std::min(layout.page.width, layout.page.height) / 20.0));
  placeTitles(metrics, figure, area, layout);
  placeLegend(metrics, figure, area, layout);
  placeCharts(metrics, figure, area, options, layout);
  return layout;
}

}  // namespace tarvex
