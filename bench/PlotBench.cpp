#include <benchmark/benchmark.h>
#include <cairo.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <utility>

#include "base/uniformRandom.h"
#include "plots/CairoStream.h"
#include "plots/Figure.h"
#include "plots/FigureIndex.h"
#include "plots/FigureLayout.h"
#include "plots/Ticks.h"
#include "plots/drawFigure.h"
#include "plots/savePicture.h"

namespace tarvex::bench {
namespace {

// About normal, from 0 to 1.
double hump(std::int32_t& state) {
  double sum = 0.0;
  for (int i = 0; i < 4; ++i) sum += uniformRandom(state);
  return sum / 4.0;
}

Figure figureOf(const std::string& title, Chart chart) {
  Figure figure;
  figure.title = title;
  figure.charts.push_back(std::move(chart));
  return figure;
}

Figure scattergram(std::size_t runs) {
  std::int32_t state = 99;
  Points points{{}, {}, namedColour("Medium Slate Blue")};
  for (std::size_t run = 0; run < runs; ++run) {
    points.x.push_back(hump(state));
    points.y.push_back(hump(state) + 4.0 * points.x.back() * points.x.back());
  }
  XyChart chart;
  chart.x = axisOver("x1", points.x, NumberForm::ThreeDecimals);
  chart.y = axisOver("Y", points.y, NumberForm::ThreeDecimals);
  chart.layers.emplace_back(std::move(points));
  return figureOf("Scattergram", std::move(chart));
}

// Half of the axes follow the first one.
Figure cobweb(std::size_t runs, std::size_t axes) {
  std::int32_t state = 99;
  CobwebChart chart;
  for (const char* name : {"Red", "Blue", "Green", "Magenta", "Midnight blue"}) {
    chart.palette.push_back(namedColour(name));
  }
  chart.markColour = namedColour("Indian Red");
  for (std::size_t axis = 0; axis < axes; ++axis) chart.axes.push_back({"x" + std::to_string(axis + 1), 0.0, 1.0, {}});
  for (std::size_t run = 0; run < runs; ++run) {
    const double first = uniformRandom(state);
    chart.colours.push_back(static_cast<std::uint8_t>(std::min(4.0, first * 5.0)));
    for (std::size_t axis = 0; axis < axes; ++axis) {
      const double own = hump(state);
      const double value = axis == 0 ? first : axis % 2 == 0 ? (first + own) / 2.0 : own;
      chart.axes[axis].positions.push_back(static_cast<float>(value));
    }
  }
  chart.runs.showDropped = true;
  chart.runs.droppedColour = chart.markColour;
  return figureOf("Cobwebs plot", std::move(chart));
}

void render(benchmark::State& state, const Figure& figure) {
  const auto format = static_cast<PictureFormat>(state.range(0));
  std::size_t bytes = 0;
  for (auto _ : state) bytes = renderPicture(figure, format).size();
  state.counters["bytes"] = static_cast<double>(bytes);
}

// By PictureFormat: SVG, PDF, PS, EPS, PNG.
void plotScattergram(benchmark::State& state) {
  render(state, scattergram(1000000));
}
BENCHMARK(plotScattergram)->ArgName("format")->DenseRange(0, 4)->Unit(benchmark::kMillisecond);

void plotCobweb(benchmark::State& state) {
  render(state, cobweb(10000, 12));
}
BENCHMARK(plotCobweb)->ArgName("format")->DenseRange(0, 4)->Unit(benchmark::kMillisecond);

// What a window of 800 x 600 draws again and again.
class Screen {
 public:
  explicit Screen(const Figure& figure)
      : layout_(layOut(figure, {800.0, 600.0, {}})),
        surface_(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 800, 600)),
        context_(cairo_create(surface_.get())) {}

  const FigureLayout& layout() const { return layout_; }
  void draw(const Figure& figure, std::initializer_list<FigureLayer> layers) {
    for (const FigureLayer layer : layers)
      benchmark::DoNotOptimize(drawLayer(context_.get(), figure, layout_, layer, {}));
  }

 private:
  FigureLayout layout_;
  CairoSurface surface_;
  CairoContext context_;
};

// After a filter has moved; runs, axes.
void redrawCobweb(benchmark::State& state) {
  Figure figure = cobweb(static_cast<std::size_t>(state.range(0)), static_cast<std::size_t>(state.range(1)));
  Screen screen(figure);
  auto& chart = std::get<CobwebChart>(figure.charts.front());
  float lower = 0.3F;
  for (auto _ : state) {
    lower = lower < 0.5F ? lower + 0.01F : 0.3F;
    chart.runs.dropped.clear();
    for (const float position : chart.axes[1].positions) chart.runs.dropped.push_back(position < lower ? 1 : 0);
    screen.draw(figure, {FigureLayer::Dropped, FigureLayer::Kept, FigureLayer::Overlay});
  }
}
BENCHMARK(redrawCobweb)
    ->ArgNames({"runs", "axes"})
    ->Args({10000, 10})
    ->Args({100000, 12})
    ->MeasureProcessCPUTime()
    ->Unit(benchmark::kMillisecond);

void redrawScattergram(benchmark::State& state) {
  const Figure figure = scattergram(1000000);
  Screen screen(figure);
  for (auto _ : state) screen.draw(figure, {FigureLayer::Kept});
}
BENCHMARK(redrawScattergram)->Unit(benchmark::kMillisecond);

void buildIndex(benchmark::State& state) {
  const Figure figure = scattergram(1000000);
  const Screen screen(figure);
  FigureIndex index;
  for (auto _ : state) benchmark::DoNotOptimize(index.build(figure, screen.layout()));
}
BENCHMARK(buildIndex)->Unit(benchmark::kMillisecond);

// One of a scattergram of a million runs, and one of a cobweb of as many.
void findRun(benchmark::State& state) {
  const Figure figure = state.range(0) == 0 ? scattergram(1000000) : cobweb(1000000, 4);
  const Screen screen(figure);
  FigureIndex index;
  if (!index.build(figure, screen.layout())) state.SkipWithError("no index");
  double x = 0.0;
  for (auto _ : state) {
    x = x < 700.0 ? x + 7.0 : 60.0;
    benchmark::DoNotOptimize(index.hit(x, 300.0, 4.0));
  }
}
BENCHMARK(findRun)->ArgName("cobweb")->DenseRange(0, 1)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace tarvex::bench
