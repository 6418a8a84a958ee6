#include "plots/SampleFigures.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "base/uniformRandom.h"
#include "plots/Ticks.h"

namespace tarvex::test {

namespace {

const Colour kBlue = namedColour("Medium Slate Blue");

std::vector<double> numbers(std::size_t count, std::int32_t state) {
  restoreInitialRandomState();
  std::vector<double> values(count);
  for (double& value : values) value = uniformRandom(state);
  return values;
}

}  // namespace

Figure figureOf(std::vector<Chart> charts, int columns) {
  Figure figure;
  figure.title = "Title";
  figure.charts = std::move(charts);
  figure.columns = columns;
  figure.width = 320.0;
  figure.height = 240.0;
  return figure;
}

XyChart scattergram(std::size_t points) {
  XyChart chart;
  Points layer{numbers(points, 1), numbers(points, 2), kBlue};
  for (std::size_t i = 0; i < points; ++i) layer.y[i] += 3.0 * layer.x[i] * layer.x[i];
  chart.x = axisOver("x1", layer.x, NumberForm::ThreeDecimals);
  chart.y = axisOver("Y", layer.y, NumberForm::ThreeDecimals);
  chart.layers.emplace_back(std::move(layer));
  chart.layers.emplace_back(Region{0.2, 0.6, 0.5, 5.0, namedColour("Indian Red")});
  return chart;
}

XyChart curves() {
  XyChart chart;
  chart.x = {"Y", std::log(0.01), std::log(100.0), AxisScale::Logarithms};
  chart.y = {"Probability", 0.0, 1.0};
  Area area{{-4.0, -2.0, 0.0, 2.0, 4.0}, {0.2, 0.5, 0.4, 0.1}, namedColour("Pale Green")};
  chart.layers.emplace_back(area);
  area.separated = true;
  area.colour = namedColour("Pink");
  chart.layers.emplace_back(area);
  for (int style = 0; style < kLineStyles; ++style) {
    Line line{{}, {}, sliceColour(static_cast<std::size_t>(style)), static_cast<LineStyle>(style), style == 6};
    for (double x = -4.5; x < 4.6; x += 0.5) {
      line.x.push_back(x);
      line.y.push_back(1.0 / (1.0 + std::exp(style / 2.0 - x)));
    }
    chart.layers.emplace_back(std::move(line));
  }
  return chart;
}

XyChart labelled(std::size_t points, const std::string& name) {
  XyChart chart;
  LabelledPoints layer{numbers(points, 5), numbers(points, 6), {}, kBlue};
  for (std::size_t i = 0; i < points; ++i) layer.labels.push_back(name.empty() ? "x" + std::to_string(i + 1) : name);
  chart.x = axisOver("mu", layer.x, NumberForm::Short);
  chart.y = axisOver("sigma", layer.y, NumberForm::Short);
  chart.layers.emplace_back(std::move(layer));
  return chart;
}

CobwebChart cobweb(std::size_t runs, std::size_t axes) {
  CobwebChart chart;
  for (const char* name : {"Red", "Blue", "Green", "Magenta", "Midnight blue"}) {
    chart.palette.push_back(namedColour(name));
  }
  chart.markColour = namedColour("Indian Red");
  for (std::size_t axis = 0; axis < axes; ++axis)
    chart.axes.push_back({"x" + std::to_string(axis + 1), -1.0, 2000.0, {}});
  if (axes > 1) chart.axes[1].filter = {100.0, 500.0};
  const std::vector<double> values = numbers(runs * axes, 7);
  for (std::size_t i = 0; i < values.size(); ++i) {
    chart.axes[i % axes].positions.push_back(static_cast<float>(values[i]));
    if (i % axes == 0) chart.colours.push_back(static_cast<std::uint8_t>(std::min(values[i] * 5.0, 4.0)));
  }
  return chart;
}

BarChart bars(std::size_t categories, const std::string& name) {
  BarChart chart{"", {"Value", -1.0, 1.0}, {}, std::vector<std::vector<Bar>>(2)};
  std::vector<double> values = numbers(2 * categories, 8);
  for (std::size_t i = 0; i < categories; ++i) {
    chart.categories.push_back(name.empty() ? "x" + std::to_string(i + 1) : name);
    for (std::vector<Bar>& series : chart.series) {
      const double value = 2.0 * values.back() - 1.0;
      values.pop_back();
      series.push_back({value, formNumber(value, NumberForm::FourDecimals),
                        namedColour(i % 2 == 0 ? "Pale Green" : "Indian Red"), false});
    }
  }
  if (categories > 1) chart.series[0][1] = {std::nan(""), "Constant", {}, true};
  return chart;
}

PieChart pie(std::size_t slices, const std::string& name) {
  PieChart chart{"Total order", {}, "No index above 0"};
  const std::vector<double> values = numbers(slices, 9);
  for (std::size_t i = 0; i < slices; ++i) {
    const double value = std::pow(values[i], 3.0) + 0.001;
    chart.slices.push_back({name.empty() ? "x" + std::to_string(i + 1) : name,
                            formNumber(value, NumberForm::FourDecimals), value, sliceColour(i)});
  }
  return chart;
}

std::vector<std::pair<std::string, Figure>> sampleFigures() {
  std::vector<std::pair<std::string, Figure>> figures = {{"scattergram", figureOf({scattergram(200)})},
                                                         {"dense", figureOf({scattergram(30000)})},
                                                         {"curves", figureOf({curves()})},
                                                         {"labelled", figureOf({labelled(30, "")})},
                                                         {"cobweb", figureOf({cobweb(50, 4)})},
                                                         {"manyLines", figureOf({cobweb(2000, 5)})},
                                                         {"bars", figureOf({bars(5, "")})},
                                                         {"pies", figureOf({pie(8, ""), pie(3, "")}, 2)}};
  for (int style = 0; style < kLineStyles; ++style) {
    figures[2].second.legend.push_back({"V " + std::to_string(style), sliceColour(static_cast<std::size_t>(style)),
                                        LegendMark::Line, static_cast<LineStyle>(style)});
  }
  figures[6].second.subtitle = "Sizes of the indices";
  figures[6].second.legend = {{"significant", namedColour("Pale Green")}, {"not", namedColour("Indian Red")}};
  return figures;
}

}  // namespace tarvex::test
