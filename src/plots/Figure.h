#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "plots/Colour.h"
#include "plots/FigureFont.h"

namespace tarvex {

// What a picture shows, in the units of its data: values, axes, texts, colours, marks. Nothing here knows how it is
// drawn; drawFigure() does. All texts are UTF-8. Values that aren't finite are allowed everywhere and are not drawn.

// How numbers stand at an axis. The first three are "%7.3g" for sizes outside 0.001 to 10000.
enum class NumberForm { TwoDecimals, ThreeDecimals, FourDecimals, Short };  // "%.2f", "%.3f", "%.4f"; "%5.3g"

enum class AxisScale {
  Linear,
  Logarithms,  // the coordinates are natural logarithms; ticks stand at round values and show the values
};

// Ticks and their texts follow from this. Requires: finite limits, lower < upper (see axisOver).
struct Axis {
  std::string title;
  double lower = 0.0;
  double upper = 1.0;
  AxisScale scale = AxisScale::Linear;
  NumberForm form = NumberForm::TwoDecimals;
  std::vector<std::string> names = {};  // where there are some, the i-th, from 0, stands at i + 1/2 in place of numbers
};

// The styles of lines that share a chart, in the order of use.
enum class LineStyle { Solid, Dash, DashDot, DashDoubleDot, Alternate, DoubleDot, LongDash };
inline constexpr int kLineStyles = 7;

// Which runs the data of a chart are, and which of them the filters leave. A filter that moves changes `dropped` alone:
// the layout and the index of the chart stay good.
struct RunMarks {
  std::vector<std::int32_t> numbers = {};  // of each run; empty: counted from 0
  std::vector<std::uint8_t> dropped = {};  // of each run, not 0 where a filter leaves it out; empty: none is
  bool showDropped = false;                // behind the others, in one colour
  Colour droppedColour = {};

  std::int32_t numberOf(std::size_t place) const {
    return place < numbers.size() ? numbers[place] : static_cast<std::int32_t>(place);
  }
  bool isDropped(std::size_t place) const { return place < dropped.size() && dropped[place] != 0; }
};

struct Points {  // parallel vectors
  std::vector<double> x, y;
  Colour colour;
  RunMarks runs = {};
  // How far points that would hide each other are drawn from where they are, to either side at most; the same for a
  // point in every picture.
  double jitterX = 0.0, jitterY = 0.0;
  bool shaded = false;  // the colours of an ordered quantity tell how many points lie on a place

  double shownX(std::size_t i) const { return jitterX == 0.0 ? x[i] : x[i] + jitterX * spread(i, 0.6180339887498949); }
  double shownY(std::size_t i) const { return jitterY == 0.0 ? y[i] : y[i] + jitterY * spread(i, 0.7548776662466927); }

 private:
  // From -1 to 1, evenly over any runs that follow each other: multiples of an irrational number have no gaps.
  static double spread(std::size_t i, double irrational) {
    const double turned = static_cast<double>(i + 1) * irrational;
    return 2.0 * (turned - static_cast<double>(static_cast<std::uint64_t>(turned))) - 1.0;
  }
};

struct Line {  // through the points in their order; interrupted where one isn't finite
  std::vector<double> x, y;
  Colour colour;
  LineStyle style = LineStyle::Solid;
  bool steps = false;  // horizontal from each point to the next, then vertical
};

struct Area {  // adjoining columns over the edges, from 0 to the heights; one edge more than heights
  std::vector<double> edges, heights;
  Colour colour;
  bool separated = false;  // columns as bars with a gap between them
};

struct Band {  // what lies between two curves, each with its name; interrupted where one isn't finite
  std::vector<double> x, lower, upper;
  Colour colour;
  std::string lowerName, upperName;
};

struct LabelledPoints {  // a mark and its text at each point; the texts are placed so that they don't overlap
  std::vector<double> x, y;
  std::vector<std::string> labels;
  Colour colour;
  std::vector<std::int32_t> records = {};  // the number of each; empty: counted from 0

  std::int32_t recordOf(std::size_t point) const {
    return point < records.size() ? records[point] : static_cast<std::int32_t>(point);
  }
};

// Squares of one unit in rows from the top of the plane, each of a colour and with a text that is shown where it fits.
struct Cells {
  std::size_t columns = 0;
  std::vector<double> values;  // row by row
  std::vector<std::string> texts;
  std::vector<Colour> colours;
};

struct Region {  // a frame around part of the plane, over all data; nothing where a bound isn't finite
  double lowerX = 0.0, upperX = 0.0, lowerY = 0.0, upperY = 0.0;
  Colour colour;
};

// A plane with two axes. Layers are drawn in their order; what lies outside the axes is cut off.
struct XyChart {
  using Layer = std::variant<Area, Band, Points, Line, LabelledPoints, Region, Cells>;
  std::string title;  // empty: none
  Axis x, y;
  std::vector<Layer> layers;
};

// Parallel vertical axes, and a line a run from axis to axis.
struct CobwebAxis {
  std::string name;
  double lower = 0.0;  // lower == upper for a constant column: its lines pass in the middle; nan: no run has a number
  double upper = 1.0;
  std::optional<std::pair<double, double>> filter;  // marked on the axis
  std::vector<float> positions = {};                // of the runs: 0 at the foot, 1 at the top
};
struct CobwebChart {
  std::vector<CobwebAxis> axes;
  std::vector<std::uint8_t> colours;  // a run's place in the palette
  std::vector<Colour> palette;
  Colour markColour;  // of axis marks and filters
  RunMarks runs = {};

  // That all axes have a position of.
  std::size_t runCount() const {
    std::size_t count = axes.empty() ? 0 : axes.front().positions.size();
    for (const CobwebAxis& axis : axes) count = std::min(count, axis.positions.size());
    return count;
  }
};

// A row per category, in each a bar per series up to the value.
struct Bar {
  double value = 0.0;
  std::string text;    // beside the bar; of a value that isn't finite or of a category without one, what to say instead
  Colour colour;       // of the bar
  bool faint = false;  // the text stands in gray: there is no value
  double from = 0.0;   // where it begins
};
struct BarChart {
  std::string title;
  Axis values;                             // horizontal; holds 0
  std::vector<std::string> categories;     // from top to bottom
  std::vector<std::vector<Bar>> series;    // of each one bar per category
  std::vector<std::int32_t> records = {};  // the number of each category; empty: counted from 0
  bool stacked = false;                    // the bars of a category share one row, each behind the other

  std::int32_t recordOf(std::size_t category) const {
    return category < records.size() ? records[category] : static_cast<std::int32_t>(category);
  }
};

struct Slice {
  std::string label;
  std::string text;    // of the value
  double value = 0.0;  // above 0
  Colour colour;
  std::int32_t record = -1;  // its number; negative: its place
};
struct PieChart {
  std::string title;
  std::vector<Slice> slices;  // clockwise from the top; the whole is their sum
  std::string emptyText;      // shown when there are none

  std::int32_t recordOf(std::size_t slice) const {
    return slices[slice].record >= 0 ? slices[slice].record : static_cast<std::int32_t>(slice);
  }
};

using Chart = std::variant<XyChart, CobwebChart, BarChart, PieChart>;

enum class LegendMark { Box, Line, Point };
struct LegendEntry {
  std::string text;
  Colour colour;
  LegendMark mark = LegendMark::Box;
  LineStyle style = LineStyle::Solid;
};

// A picture: charts side by side in rows of `columns` under one title. The size is what it needs to be read, in units
// of which 96 are an inch.
struct Figure {
  std::string title;
  std::string subtitle;  // empty: none
  std::vector<Chart> charts;
  int columns = 1;
  std::vector<LegendEntry> legend;  // empty: none
  std::string emptyText = {};       // why there are no charts
  FigureFont font = {};
  double width = 800.0;
  double height = 600.0;
};

}  // namespace tarvex
