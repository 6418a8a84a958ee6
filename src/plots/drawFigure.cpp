#include "plots/drawFigure.h"

#include <cairo.h>
#include <fontconfig/fontconfig.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <variant>

#include "plots/Canvas.h"
#include "plots/Figure.h"
#include "plots/Legend.h"
#include "plots/chartDrawing.h"

namespace tarvex {

namespace {

constexpr double kMargin = 10.0;
constexpr double kChartGap = 18.0;
// Below this size of a chart, texts and marks shrink with it; no further than what can still be read.
constexpr double kFullWidth = 380.0;
constexpr double kFullHeight = 260.0;
constexpr double kLeastScale = 0.62;
// Shares of the height that titles and the legend take at most.
constexpr double kTitleShare = 0.25;
constexpr double kLegendShare = 0.3;

std::size_t columnsOf(const Figure& figure) {
  return std::min<std::size_t>(static_cast<std::size_t>(std::max(figure.columns, 1)),
                               std::max<std::size_t>(figure.charts.size(), 1));
}

std::size_t rowsOf(const Figure& figure) {
  const std::size_t columns = columnsOf(figure);
  return std::max<std::size_t>((figure.charts.size() + columns - 1) / columns, 1);
}

double scaleFor(const Figure& figure, const DrawTarget& target) {
  const double width = target.width / static_cast<double>(columnsOf(figure));
  const double height = target.height / static_cast<double>(rowsOf(figure));
  return std::clamp(std::min(width / kFullWidth, height / kFullHeight), kLeastScale, 1.0);
}

// Title and subtitle, as far as they have room. Cuts what they take off `area`.
void drawTitles(Canvas& canvas, const Figure& figure, Rect& area) {
  const double room = area.height * kTitleShare;
  double taken = 0.0;
  const auto draw = [&](const std::string& text, const TextStyle& style, const Colour& colour) {
    const double height = canvas.pen().height(style);
    if (text.empty() || taken + height > room) return;
    canvas.setColour(colour);
    canvas.pen().draw(text, style, area.centreX(), area.y + taken + height / 2.0, Anchor::Centre, area.width);
    taken += height;
  };
  draw(figure.title, canvas.titleStyle(), kInk);
  draw(figure.subtitle, canvas.bodyStyle(), kFaintInk);
  if (taken > 0.0) taken += canvas.gap();
  area.y += taken;
  area.height -= taken;
}

void drawLegend(Canvas& canvas, const Figure& figure, Rect& area) {
  const Legend legend(canvas, figure.legend, area.width, area.height * kLegendShare);
  if (legend.height() == 0.0) return;
  legend.draw(area.x, area.bottom() - legend.height());
  area.height -= legend.height() + canvas.gap();
}

void drawCharts(Canvas& canvas, const Figure& figure, const Rect& area) {
  const std::size_t columns = columnsOf(figure);
  const auto across = static_cast<double>(columns);
  const auto down = static_cast<double>(rowsOf(figure));
  const double gap = kChartGap * canvas.scale();
  const double width = (area.width - gap * (across - 1.0)) / across;
  const double height = (area.height - gap * (down - 1.0)) / down;
  if (!(width > 1.0 && height > 1.0)) return;
  for (std::size_t i = 0; i < figure.charts.size(); ++i) {
    const Rect cell{area.x + static_cast<double>(i % columns) * (width + gap),
                    area.y + static_cast<double>(i / columns) * (height + gap), width, height};
    std::visit([&](const auto& chart) { drawChart(canvas, cell, chart); }, figure.charts[i]);
  }
}

}  // namespace

void drawFigure(cairo_t* context, const Figure& figure, const DrawTarget& target) {
  const Rect page{0.0, 0.0, target.width, target.height};
  const SavedState state(context, page);
  cairo_new_path(context);
  cairo_set_source_rgb(context, 1.0, 1.0, 1.0);
  cairo_paint(context);
  if (page.empty() || !hasFont()) return;
  Canvas canvas(context, target, scaleFor(figure, target));
  Rect area = page.grown(-std::min(kMargin, std::min(page.width, page.height) / 20.0));
  drawTitles(canvas, figure, area);
  drawLegend(canvas, figure, area);
  drawCharts(canvas, figure, area);
}

const char* drawingVersion() {
  return cairo_version_string();
}

bool hasFont() {
  // Asked once: fonts that are installed later are seen by the next start.
  static const bool has = [] {
    FcPattern* any = FcPatternCreate();
    FcObjectSet* family = FcObjectSetBuild(FC_FAMILY, nullptr);
    FcFontSet* fonts = FcFontList(nullptr, any, family);
    const bool found = fonts != nullptr && fonts->nfont > 0;
    if (fonts != nullptr) FcFontSetDestroy(fonts);
    FcObjectSetDestroy(family);
    FcPatternDestroy(any);
    return found;
  }();
  return has;
}

}  // namespace tarvex
