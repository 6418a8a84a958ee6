#include "toolkit/chartText.h"

#include <QStringList>
#include <algorithm>
#include <cmath>
#include <string>
#include <variant>
#include <vector>

#include "base/NumberText.h"
#include "plots/Figure.h"
#include "plots/FigureIndex.h"

namespace tarvex {
namespace {

QString text(double value) {
  return QString::fromStdString(numberText(value));
}

QString nameOf(const Axis& axis, const char* otherwise) {
  return axis.title.empty() ? QString(otherwise) : QString::fromStdString(axis.title);
}

QString pairText(const XyChart& chart, double x, double y) {
  return nameOf(chart.x, "x") + " = " + text(valueOn(chart.x, x)) + ", " + nameOf(chart.y, "y") + " = " +
         text(valueOn(chart.y, y));
}

// The place of a run with this number; the count when there is none.
std::size_t placeOf(const RunMarks& runs, std::int32_t number, std::size_t count) {
  if (runs.numbers.empty()) return static_cast<std::size_t>(std::max(number, 0));
  const auto found = std::find(runs.numbers.begin(), runs.numbers.end(), number);
  return found == runs.numbers.end() ? count : static_cast<std::size_t>(found - runs.numbers.begin());
}

QString runName(std::int32_t number) {
  return "run " + groupedNumber(std::int64_t{number} + 1);
}

struct LayerHit {
  const XyChart& chart;
  std::int32_t number;

  QString operator()(const Points& points) const {
    const std::size_t count = std::min(points.x.size(), points.y.size());
    const std::size_t at = placeOf(points.runs, number, count);
    return at < count ? runName(number) + ": " + pairText(chart, points.x[at], points.y[at]) : QString();
  }
  QString operator()(const Line& line) const {
    const auto at = static_cast<std::size_t>(number);
    return at < std::min(line.x.size(), line.y.size()) ? pairText(chart, line.x[at], line.y[at]) : QString();
  }
  QString operator()(const Area& area) const {
    const auto at = static_cast<std::size_t>(number);
    if (at >= area.heights.size() || at + 1 >= area.edges.size()) return {};
    return nameOf(chart.x, "x") + " from " + text(valueOn(chart.x, area.edges[at])) + " to " +
           text(valueOn(chart.x, area.edges[at + 1])) + ": " + nameOf(chart.y, "y") + " = " + text(area.heights[at]);
  }
  QString operator()(const Band&) const { return {}; }
  QString operator()(const LabelledPoints& points) const {
    for (std::size_t at = 0; at < std::min(points.labels.size(), points.x.size()); ++at)
      if (points.recordOf(at) == number)
        return QString::fromStdString(points.labels[at]) + ": " + pairText(chart, points.x[at], points.y[at]);
    return {};
  }
  QString operator()(const Region&) const { return {}; }
  QString operator()(const Cells&) const { return {}; }
};

struct ChartHit {
  const Hit& hit;

  QString operator()(const XyChart& chart) const {
    return hit.part < chart.layers.size() ? std::visit(LayerHit{chart, hit.number}, chart.layers[hit.part]) : QString();
  }
  QString operator()(const CobwebChart& chart) const {
    const std::size_t at = placeOf(chart.runs, hit.number, chart.runCount());
    if (at >= chart.runCount()) return {};
    QStringList values;
    for (const CobwebAxis& axis : chart.axes)
      values << QString::fromStdString(axis.name) + " = " +
                    text(axis.lower + static_cast<double>(axis.positions[at]) * (axis.upper - axis.lower));
    return runName(hit.number) + ": " + values.join(", ");
  }
  QString operator()(const BarChart& chart) const {
    if (hit.part >= chart.series.size()) return {};
    for (std::size_t i = 0; i < std::min(chart.categories.size(), chart.series[hit.part].size()); ++i) {
      if (chart.recordOf(i) != hit.number) continue;
      const Bar& bar = chart.series[hit.part][i];
      return QString::fromStdString(chart.categories[i]) + ": " +
             (bar.text.empty() ? text(bar.value) : QString::fromStdString(bar.text));
    }
    return {};
  }
  QString operator()(const PieChart& chart) const {
    for (std::size_t i = 0; i < chart.slices.size(); ++i)
      if (chart.recordOf(i) == hit.number)
        return QString::fromStdString(chart.slices[i].label + ": " + chart.slices[i].text);
    return {};
  }
};

QString rangeText(const Axis& axis, const char* otherwise) {
  return nameOf(axis, otherwise) + " from " + text(valueOn(axis, axis.lower)) + " to " +
         text(valueOn(axis, axis.upper));
}

struct LayerWords {
  QString operator()(const Points& points) const { return groupedNumber(std::ssize(points.x)) + " points"; }
  QString operator()(const Line& line) const {
    return "a line through " + groupedNumber(std::ssize(line.x)) + " points";
  }
  QString operator()(const Area& area) const { return groupedNumber(std::ssize(area.heights)) + " columns"; }
  QString operator()(const Band& band) const {
    return QString::fromStdString("a band from " + band.lowerName + " to " + band.upperName);
  }
  QString operator()(const LabelledPoints& points) const {
    return groupedNumber(std::ssize(points.x)) + " named points";
  }
  QString operator()(const Region& region) const {
    return std::isfinite(region.lowerX) ? QString("a marked region") : QString();
  }
  QString operator()(const Cells& cells) const {
    return "a square for each of " + groupedNumber(std::ssize(cells.values)) + " values";
  }
};

struct ChartWords {
  QString operator()(const XyChart& chart) const {
    QStringList parts;
    for (const XyChart::Layer& layer : chart.layers) parts << std::visit(LayerWords{}, layer);
    parts.removeAll(QString());
    return titled(chart.title) + rangeText(chart.x, "x") + ", " + rangeText(chart.y, "y") + ": " + parts.join(", ");
  }
  QString operator()(const CobwebChart& chart) const {
    QStringList axes;
    for (const CobwebAxis& axis : chart.axes)
      axes << QString::fromStdString(axis.name) + (std::isnan(axis.lower)
                                                       ? QString(" without a number")
                                                       : " from " + text(axis.lower) + " to " + text(axis.upper));
    return groupedNumber(static_cast<std::int64_t>(chart.runCount())) + " runs over the axes " + axes.join(", ");
  }
  QString operator()(const BarChart& chart) const {
    constexpr std::size_t kMostTold = 12;
    QStringList bars;
    const std::size_t told = std::min(chart.categories.size(), kMostTold);
    for (std::size_t i = 0; i < told; ++i)
      for (const std::vector<Bar>& series : chart.series)
        if (i < series.size()) bars << QString::fromStdString(chart.categories[i]) + ' ' + text(series[i].value);
    if (told < chart.categories.size())
      bars << groupedNumber(static_cast<std::int64_t>(chart.categories.size() - told)) + " more";
    return titled(chart.title) + "bars: " + bars.join(", ");
  }
  QString operator()(const PieChart& chart) const {
    QStringList slices;
    for (const Slice& slice : chart.slices) slices << QString::fromStdString(slice.label + ' ' + slice.text);
    return titled(chart.title) +
           (slices.isEmpty() ? QString::fromStdString(chart.emptyText) : "slices: " + slices.join(", "));
  }

 private:
  static QString titled(const std::string& title) {
    return title.empty() ? QString() : QString::fromStdString(title) + ", ";
  }
};

}  // namespace

double valueOn(const Axis& axis, double coordinate) {
  return axis.scale == AxisScale::Logarithms ? std::exp(coordinate) : coordinate;
}

QString groupedNumber(std::int64_t number) {
  QString digits = QString::number(number);
  for (qsizetype at = digits.size() - 3; at > (number < 0 ? 1 : 0); at -= 3) digits.insert(at, ',');
  return digits;
}

QString hitText(const Figure& figure, const Hit& hit) {
  return hit.chart < figure.charts.size() && hit.number >= 0 ? std::visit(ChartHit{hit}, figure.charts[hit.chart])
                                                             : QString();
}

QString figureText(const Figure& figure) {
  QStringList parts;
  for (const std::string& line : {figure.title, figure.subtitle})
    if (!line.empty()) parts << QString::fromStdString(line);
  for (const Chart& chart : figure.charts) parts << std::visit(ChartWords{}, chart);
  return parts.join(". ");
}

}  // namespace tarvex
