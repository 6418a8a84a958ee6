#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "base/uniformRandom.h"
#include "plots/Figure.h"
#include "plots/Ticks.h"
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
      chart.positions.push_back(static_cast<float>(axis == 0 ? first : axis % 2 == 0 ? (first + own) / 2.0 : own));
    }
  }
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

}  // namespace
}  // namespace tarvex::bench
