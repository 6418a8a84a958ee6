#include "plots/drawFigure.h"

#include <cairo.h>
#include <fontconfig/fontconfig.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <variant>

#include "plots/Canvas.h"
#include "plots/Figure.h"
#include "plots/FigureLayout.h"
#include "plots/chartDrawing.h"

namespace tarvex {

namespace {

void fillPage(cairo_t* context, const Colour& colour) {
  constexpr double kFull = 65535.0;
  cairo_set_source_rgb(context, colour.red / kFull, colour.green / kFull, colour.blue / kFull);
  cairo_paint(context);
}

// Title and subtitle; what has no room has no place.
void drawTitles(Canvas& canvas, const Figure& figure, const FigureLayout& layout) {
  for (const TitlePlace& place : layout.titles) {
    canvas.setColour(place.sub ? canvas.inks().faintText : canvas.inks().text);
    canvas.pen().draw(place.sub ? figure.subtitle : figure.title, place.sub ? canvas.bodyStyle() : canvas.titleStyle(),
                      place.box.centreX(), place.box.centreY(), Anchor::Centre, place.box.width);
  }
}

void drawEmptyText(Canvas& canvas, const Figure& figure, const FigureLayout& layout) {
  canvas.setColour(canvas.inks().faintText);
  canvas.pen().draw(figure.emptyText, canvas.bodyStyle(), layout.page.centreX(), layout.page.centreY(), Anchor::Centre,
                    layout.page.width - 2.0 * canvas.gap());
}

// The layer of one chart, if its layout is of its kind.
bool drawChartLayer(Canvas& canvas, FigureLayer layer, const Chart& chart, const ChartLayout& layout,
                    const Progress& progress) {
  return std::visit(
      [&](const auto& data, const auto& place) {
        if constexpr (requires { drawChart(canvas, layer, data, place, progress); })
          return drawChart(canvas, layer, data, place, progress);
        else
          return true;
      },
      chart, layout);
}

// What is asked of fonts.
FcObjectSet* familyAlone() {
  FcObjectSet* asked = FcObjectSetCreate();
  FcObjectSetAdd(asked, FC_FAMILY);
  return asked;
}

}  // namespace

bool drawLayer(cairo_t* context, const Figure& figure, const FigureLayout& layout, FigureLayer layer,
               const DrawOptions& options, const Progress& progress) {
  const SavedState state(context, layout.page);
  cairo_new_path(context);
  if (layer == FigureLayer::Frame) fillPage(context, options.inks.page);
  if (layout.page.empty() || !hasFont()) return true;
  Canvas canvas(context, layout.scale, options, figure.font);
  if (layer == FigureLayer::Frame) {
    drawTitles(canvas, figure, layout);
    if (figure.charts.empty()) drawEmptyText(canvas, figure, layout);
    drawLegend(canvas, figure.legend, layout.legend);
  }
  const std::size_t charts = std::min(figure.charts.size(), layout.charts.size());
  for (std::size_t i = 0; i < charts; ++i) {
    const Progress part = progress.part(static_cast<double>(i) / static_cast<double>(charts),
                                        static_cast<double>(i + 1) / static_cast<double>(charts));
    if (!drawChartLayer(canvas, layer, figure.charts[i], layout.charts[i], part)) return false;
  }
  return true;
}

bool drawFigure(cairo_t* context, const Figure& figure, double width, double height, const DrawOptions& options,
                const Progress& progress) {
  FigureLayout layout;
  layout.page = {0.0, 0.0, width, height};
  if (!layout.page.empty() && hasFont()) layout = layOut(figure, {width, height, {}});
  constexpr double kLayers = std::size(kFigureLayers);
  double done = 0.0;
  for (const FigureLayer layer : kFigureLayers) {
    if (!drawLayer(context, figure, layout, layer, options, progress.part(done, done + 1.0 / kLayers))) return false;
    done += 1.0 / kLayers;
  }
  return true;
}

const char* drawingVersion() {
  return cairo_version_string();
}

bool hasFont() {
  // Asked once: fonts that are installed later are seen by the next start.
  static const bool has = [] {
    FcPattern* any = FcPatternCreate();
    FcObjectSet* family = familyAlone();
    FcFontSet* fonts = FcFontList(nullptr, any, family);
    const bool found = fonts != nullptr && fonts->nfont > 0;
    if (fonts != nullptr) FcFontSetDestroy(fonts);
    FcObjectSetDestroy(family);
    FcPatternDestroy(any);
    return found;
  }();
  return has;
}

bool hasFont(const std::string& family) {
  FcPattern* wanted = FcPatternCreate();
  FcPatternAddString(wanted, FC_FAMILY, reinterpret_cast<const FcChar8*>(family.c_str()));
  FcObjectSet* nothing = familyAlone();
  FcFontSet* fonts = FcFontList(nullptr, wanted, nothing);
  const bool found = fonts != nullptr && fonts->nfont > 0;
  if (fonts != nullptr) FcFontSetDestroy(fonts);
  FcObjectSetDestroy(nothing);
  FcPatternDestroy(wanted);
  return found;
}

}  // namespace tarvex
