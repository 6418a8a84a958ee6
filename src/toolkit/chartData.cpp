#include <QStringList>
#include <algorithm>
#include <cmath>
#include <functional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "base/NumberText.h"
#include "plots/Figure.h"
#include "toolkit/chartText.h"

namespace tarvex {
namespace {

// A block of the table: names, and each row's fields.
struct Block {
  std::vector<std::string> names;
  std::size_t rows = 0;
  std::function<std::string(std::size_t row, std::size_t column)> field;
};

std::string titleOr(const Axis& axis, const char* otherwise) {
  return axis.title.empty() ? otherwise : axis.title;
}

std::string runNumber(const RunMarks& runs, std::size_t place) {
  return std::to_string(std::int64_t{runs.numberOf(place)} + 1);
}

struct LayerBlock {
  const XyChart& chart;

  Block operator()(const Points& points) const {
    return {{"run", titleOr(chart.x, "x"), titleOr(chart.y, "y")},
            std::min(points.x.size(), points.y.size()),
            [this, &points](std::size_t row, std::size_t column) {
              return column == 0 ? runNumber(points.runs, row) : coordinate(points, row, column == 1);
            }};
  }
  Block operator()(const Line& line) const {
    return {{titleOr(chart.x, "x"), titleOr(chart.y, "y")},
            std::min(line.x.size(), line.y.size()),
            [this, &line](std::size_t row, std::size_t column) { return coordinate(line, row, column == 0); }};
  }
  Block operator()(const Area& area) const {
    const std::string x = titleOr(chart.x, "x");
    return {{x + " from", x + " to", titleOr(chart.y, "y")},
            area.edges.empty() ? 0 : std::min(area.heights.size(), area.edges.size() - 1),
            [this, &area](std::size_t row, std::size_t column) {
              return numberText(column == 2 ? area.heights[row] : valueOn(chart.x, area.edges[row + column]));
            }};
  }
  Block operator()(const Band& band) const {
    return {{titleOr(chart.x, "x"), band.lowerName, band.upperName},
            std::min({band.x.size(), band.lower.size(), band.upper.size()}),
            [this, &band](std::size_t row, std::size_t column) {
              if (column == 0) return numberText(valueOn(chart.x, band.x[row]));
              return numberText(valueOn(chart.y, column == 1 ? band.lower[row] : band.upper[row]));
            }};
  }
  Block operator()(const LabelledPoints& points) const {
    return {{"name", titleOr(chart.x, "x"), titleOr(chart.y, "y")},
            std::min({points.x.size(), points.y.size(), points.labels.size()}),
            [this, &points](std::size_t row, std::size_t column) {
              return column == 0 ? points.labels[row] : coordinate(points, row, column == 1);
            }};
  }
  Block operator()(const Cells& cells) const {
    std::vector<std::string> names{""};
    for (std::size_t i = 0; i < cells.columns; ++i)
      names.push_back(i < chart.x.names.size() ? chart.x.names[i] : std::to_string(i + 1));
    return {std::move(names), cells.columns == 0 ? 0 : cells.values.size() / cells.columns,
            [this, &cells](std::size_t row, std::size_t column) {
              if (column > 0) return numberText(cells.values[row * cells.columns + column - 1]);
              const std::vector<std::string>& up = chart.y.names;
              return row < up.size() ? up[up.size() - 1 - row] : std::to_string(row + 1);
            }};
  }
  Block operator()(const Region& region) const {
    const std::string x = titleOr(chart.x, "x");
    const std::string y = titleOr(chart.y, "y");
    return {{x + " from", x + " to", y + " from", y + " to"}, 1, [&region](std::size_t, std::size_t column) {
              const double bounds[] = {region.lowerX, region.upperX, region.lowerY, region.upperY};
              return numberText(bounds[column]);
            }};
  }

 private:
  template <class Layer>
  std::string coordinate(const Layer& layer, std::size_t row, bool x) const {
    return numberText(x ? valueOn(chart.x, layer.x[row]) : valueOn(chart.y, layer.y[row]));
  }
};

void visitBlocks(const XyChart& chart, const std::function<void(const Block&)>& visit) {
  for (const XyChart::Layer& layer : chart.layers) {
    const LayerBlock maker{chart};
    visit(std::visit(maker, layer));
  }
}

void visitBlocks(const CobwebChart& chart, const std::function<void(const Block&)>& visit) {
  std::vector<std::string> names{"run"};
  for (const CobwebAxis& axis : chart.axes) names.push_back(axis.name);
  visit({std::move(names), chart.runCount(), [&chart](std::size_t row, std::size_t column) {
           if (column == 0) return runNumber(chart.runs, row);
           const CobwebAxis& axis = chart.axes[column - 1];
           return numberText(axis.lower + static_cast<double>(axis.positions[row]) * (axis.upper - axis.lower));
         }});
}

void visitBlocks(const BarChart& chart, const std::function<void(const Block&)>& visit) {
  const bool single = chart.series.size() == 1;
  std::vector<std::string> names{"name"};
  for (std::size_t i = 0; i < chart.series.size(); ++i)
    names.push_back(titleOr(chart.values, "value") + (single ? "" : ' ' + std::to_string(i + 1)));
  visit({std::move(names), chart.categories.size(), [&chart](std::size_t row, std::size_t column) {
           if (column == 0) return chart.categories[row];
           const std::vector<Bar>& series = chart.series[column - 1];
           return row < series.size() ? numberText(series[row].value) : std::string();
         }});
}

void visitBlocks(const PieChart& chart, const std::function<void(const Block&)>& visit) {
  visit({{"name", "value"}, chart.slices.size(), [&chart](std::size_t row, std::size_t column) {
           return column == 0 ? chart.slices[row].label : numberText(chart.slices[row].value);
         }});
}

void visitFigure(const Figure& figure, const std::function<void(const Block&)>& visit) {
  for (const Chart& chart : figure.charts) std::visit([&](const auto& data) { visitBlocks(data, visit); }, chart);
}

void append(std::string& text, const std::string& field, char separator) {
  if (field.find_first_of(std::string("\"\n") + separator) == std::string::npos) {
    text += field;
    return;
  }
  text += '"';
  for (const char c : field) text += c == '"' ? std::string("\"\"") : std::string(1, c);
  text += '"';
}

}  // namespace

QString figureData(const Figure& figure, QChar separator) {
  const char between = separator.toLatin1();
  std::string text;
  visitFigure(figure, [&](const Block& block) {
    if (!text.empty()) text += '\n';
    const std::size_t columns = block.names.size();
    for (std::size_t column = 0; column < columns; ++column) {
      append(text, block.names[column], between);
      text += column + 1 < columns ? between : '\n';
    }
    for (std::size_t row = 0; row < block.rows; ++row) {
      for (std::size_t column = 0; column < columns; ++column) {
        append(text, block.field(row, column), between);
        text += column + 1 < columns ? between : '\n';
      }
    }
  });
  return QString::fromStdString(text);
}

std::int64_t figureDataFields(const Figure& figure) {
  std::int64_t fields = 0;
  visitFigure(figure,
              [&](const Block& block) { fields += static_cast<std::int64_t>((block.rows + 1) * block.names.size()); });
  return fields;
}

}  // namespace tarvex
