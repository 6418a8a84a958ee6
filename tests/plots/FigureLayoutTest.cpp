// A figure's layout, and what is found by it.

#include "plots/FigureLayout.h"

#include "plots/Canvas.h"
#include "plots/FigureIndex.h"
#include "plots/LineCounts.h"
#include "plots/SampleFigures.h"
#include "support/Test.h"

namespace tarvex::test {
namespace {

constexpr double kReach = 3.0;

// What a hit at a place must find.
struct Mark {
  Hit::Kind kind;
  std::int32_t number;
  double x, y;
};

struct MarksOf {
  std::vector<Mark> marks = {};

  void operator()(const XyChart& chart, const PlaneLayout& at) {
    for (const XyChart::Layer& layer : chart.layers) {
      if (const auto* points = std::get_if<Points>(&layer))
        for (std::size_t i = 0; i < points->x.size(); i += points->x.size() / 50)
          add(Hit::Kind::Run, i, at.x(points->x[i]), at.y(points->y[i]));
      if (const auto* line = std::get_if<Line>(&layer); line != nullptr)
        for (std::size_t i = 0; i < line->x.size(); ++i) add(Hit::Kind::Point, i, at.x(line->x[i]), at.y(line->y[i]));
    }
    for (const PlaneLayout::LabelPlace& label : at.labels) add(Hit::Kind::Record, label.point, label.x, label.y);
  }
  void operator()(const CobwebChart& chart, const CobwebLayout& at) {
    const std::size_t gap = at.axes.size() - 2;
    const auto level = [&](std::size_t axis, std::size_t run) {
      return at.levelOf(axis, chart.axes[axis].positions[run]);
    };
    for (std::size_t run = 0; run < chart.runCount(); run += 7)
      add(Hit::Kind::Run, run, (at.axes[gap].x + at.axes[gap + 1].x) / 2, (level(gap, run) + level(gap + 1, run)) / 2);
  }
  void operator()(const BarChart& chart, const BarLayout& at) {
    for (std::size_t i = 0; i < chart.categories.size(); ++i) {
      const Rect box = at.barBox(1, i, chart.series[1][i]);
      add(Hit::Kind::Bar, i, box.centreX(), box.centreY());
    }
  }
  void operator()(const PieChart&, const PieLayout& at) {
    for (const PieLayout::Piece& piece : at.pieces)
      add(Hit::Kind::Slice, piece.slice, at.x(piece.middle(), 0.5), at.y(piece.middle(), 0.5));
  }
  template <class Other, class Layout>
  void operator()(const Other&, const Layout&) {
    ADD_FAILURE() << "a layout of another kind";
  }

 private:
  void add(Hit::Kind kind, std::size_t number, double x, double y) {
    marks.push_back({kind, static_cast<std::int32_t>(number), x, y});
  }
};

TEST(FigureLayout, whatStandsAtAPlaceIsFound) {
  for (const auto& [name, figure] : sampleFigures()) {
    SCOPED_TRACE(name);
    const FigureLayout layout = layOut(figure, {640.0, 480.0, {}});
    FigureIndex index;
    EXPECT_FALSE(index.hit(100.0, 100.0, kReach)) << "not built";
    EXPECT_FALSE(index.build(figure, layout, Progress([](double) { return false; })) && name == "dense");
    ASSERT_TRUE(index.build(figure, layout));
    for (std::size_t chart = 0; chart < figure.charts.size(); ++chart) {
      MarksOf all;
      std::visit(all, figure.charts[chart], layout.charts[chart]);
      EXPECT_FALSE(all.marks.empty());
      for (const Mark& mark : all.marks) {
        const auto* plane = std::get_if<PlaneLayout>(&layout.charts[chart]);
        const std::optional<Hit> hit = index.hit(mark.x, mark.y, kReach);
        if (plane != nullptr && !plane->frame.plane.holds(mark.x, mark.y)) continue;
        ASSERT_TRUE(hit) << mark.number;
        EXPECT_EQ(hit->number, mark.number);
        EXPECT_TRUE(hit->kind == mark.kind && hit->chart == chart && hit->distance < 1e-6);
      }
    }
    for (const double corner : {1.0, 479.0}) EXPECT_FALSE(index.hit(corner, corner, kReach));
  }
}

TEST(FigureLayout, whatHasNoRoomForItsNameIsCounted) {
  Figure figure = figureOf({cobweb(20, 200)}, 1);
  for (int i = 0; i < 500; ++i) figure.legend.push_back({"entry " + std::to_string(i), {}, LegendMark::Line, {}});
  const FigureLayout layout = layOut(figure, {640.0, 480.0, {}});
  const LegendLayout& legend = layout.legend;
  ASSERT_FALSE(legend.places.empty());
  EXPECT_EQ(legend.more, "and " + std::to_string(500 - legend.places.size()) + " more");
  EXPECT_LE(legend.moreText.right(), 640.0);
  EXPECT_GE(legend.moreText.x, legend.places.back().text.right());
  const auto& web = std::get<CobwebLayout>(layout.charts[0]);
  EXPECT_NE(web.unnamed.find("of 200 axes"), std::string::npos);
  EXPECT_LT(web.lowers.top + web.lowers.height, web.unnamedTop);
  figure.legend.resize(2);
  EXPECT_EQ(layOut(figure, {640.0, 480.0, {}}).legend.more, "");
}

TEST(FigureLayout, columnsDroppedRunsAndZoom) {
  Figure figure = figureOf({scattergram(200), curves(), cobweb(60, 3)}, 3);
  auto& points = std::get<Points>(std::get<XyChart>(figure.charts[0]).layers[0]);
  auto& runs = std::get<CobwebChart>(figure.charts[2]).runs;
  points.x[7] = 0.5;
  points.y[7] = 2.0;
  points.runs.numbers.assign(200, 3);
  points.runs.numbers[7] = 1007;
  const FigureLayout layout =
      layOut(figure, {1500.0, 400.0, {{0, 0, 0.45, 0.55}, {0, 1, 1.9, 2.1}, {2, 1, 100.0, 500.0}}});
  FigureIndex index;
  ASSERT_TRUE(index.build(figure, layout));
  const auto& plane = std::get<PlaneLayout>(layout.charts[0]);
  EXPECT_NEAR(plane.x(0.45), plane.frame.plane.x, 1e-9);
  ASSERT_TRUE(index.hit(plane.x(0.5), plane.y(2.0), kReach));
  EXPECT_EQ(index.hit(plane.x(0.5), plane.y(2.0), kReach)->number, 1007);
  EXPECT_EQ(index.hit(plane.x(0.5), plane.y(2.0), 1e4)->number, 1007) << "the nearest of all charts, not the last";
  points.runs.dropped.assign(200, 1);
  EXPECT_FALSE(index.hit(plane.x(0.5), plane.y(2.0), kReach)) << "it isn't shown";
  points.runs.showDropped = true;
  EXPECT_TRUE(index.hit(plane.x(0.5), plane.y(2.0), kReach));

  const auto& columns = std::get<PlaneLayout>(layout.charts[1]);
  const std::optional<Hit> bin = index.hit(columns.x(-1.0), columns.y(0.25), 0.0);
  ASSERT_TRUE(bin);
  EXPECT_TRUE(bin->kind == Hit::Kind::Bin && bin->number == 1);

  const auto& cobwebAt = std::get<CobwebLayout>(layout.charts[2]);
  const double x = cobwebAt.axes[1].x;
  EXPECT_NEAR(cobwebAt.levelOf(1, (500.0F + 1.0F) / 2001.0F), cobwebAt.plane.y, 1e-3);
  const std::optional<AxisHit> axis = axisAt(layout, x + 2.0, cobwebAt.plane.bottom(), kReach);
  ASSERT_TRUE(axis);
  EXPECT_TRUE(axis->chart == 2 && axis->axis == 1 && std::abs(axis->value - 100.0) < 1e-9);
  EXPECT_FALSE(axisAt(layout, x + 20.0, cobwebAt.plane.centreY(), kReach));
  EXPECT_EQ(axisAt(layout, plane.frame.plane.centreX(), plane.area.bottom(), kReach)->axis, 0u);
  runs.dropped.assign(60, 1);
  EXPECT_FALSE(index.hit(x - 20.0, cobwebAt.plane.centreY(), 1000.0) &&
               index.hit(x - 20.0, cobwebAt.plane.centreY(), 1000.0)->chart == 2);
}

TEST(ClipLine, whatLiesOutsideIsNone) {
  const Rect clip{0.0, 0.0, 10.0, 10.0};
  double x0 = -5.0, y0 = 8.0, x1 = 2.0, y1 = 15.0;
  EXPECT_FALSE(clipLine(clip, x0, y0, x1, y1)) << "past a corner";
  x0 = -5.0, y0 = 0.0, x1 = 10.0, y1 = 15.0;
  ASSERT_TRUE(clipLine(clip, x0, y0, x1, y1));
  EXPECT_TRUE(x0 == 0.0 && y0 == 5.0 && x1 == 5.0 && y1 == 10.0);
}

TEST(AxisMap, positionsAndValuesAreEachOthersInverse) {
  constexpr double kLargest = std::numeric_limits<double>::max();
  for (const auto& [lower, upper] :
       {std::pair(-1.0, 3.0), {0.1, 0.3}, {1e6, 1e6 + 1.0}, {-kLargest, kLargest}, {0.0, 5e-324}, {-1e-300, 1e300}}) {
    const AxisMap map({"", lower, upper}, 250.0, 50.0);
    EXPECT_TRUE(map.inverse(250.0) == lower && map.inverse(50.0) == upper);
    for (double at = 50.0; at <= 250.0 && upper > 5e-324; at += 12.5)
      EXPECT_NEAR(map(map.inverse(at)), at, 1e-6) << lower;
    EXPECT_TRUE(std::isfinite(map.inverse(-1e9)) && std::isnan(map.inverse(std::nan(""))));
  }
}

// Each line followed by itself, on the grid of LineCounts: quarters of a row, whole columns, two quarters beyond.
std::vector<std::uint32_t> countedOneByOne(const std::vector<LineCounts::Axis>& axes, int width, int height) {
  std::vector<std::uint32_t> counts(static_cast<std::size_t>(width * height));
  for (std::size_t axis = 1; axis < axes.size(); ++axis)
    for (std::size_t line = 0; line < axes[0].rows.size(); ++line) {
      const double from = 4.0 * axes[axis - 1].rows[line];
      const double rise = 4.0 * axes[axis].rows[line] - from;
      if (!std::isfinite(rise)) continue;
      const double way = axes[axis].x - axes[axis - 1].x;
      for (int column = static_cast<int>(axes[axis - 1].x); column < axes[axis].x; ++column) {
        const double enter = std::floor(from + rise * (column - axes[axis - 1].x) / way);
        const double leave = std::floor(from + rise * (column + 1 - axes[axis - 1].x) / way);
        for (double row = std::min(enter, leave) - 1.0; row <= std::max(enter, leave) + 1.0; ++row)
          if (row >= 0.0 && row < 4 * height)
            ++counts[static_cast<std::size_t>(static_cast<int>(row) / 4 * width + column)];
      }
    }
  return counts;
}

TEST(LineCounts, countEachLineInEachPixel) {
  constexpr int kWidth = 33;
  constexpr int kHeight = 24;
  std::vector<LineCounts::Axis> axes{{0.0, {}}, {16.0, {}}, {32.0, {}}};
  std::vector<std::uint8_t> classes;
  for (int line = 0; line < 60000; ++line) {
    // Multiples of 1/8: exact in either precision.
    for (LineCounts::Axis& axis : axes) axis.rows.push_back(static_cast<float>(line * 7919 % 251) / 8.0F - 3.0F);
    axes[1].rows.back() = line % 100 == 0 ? std::nanf("") : static_cast<float>(line % 193) / 8.0F;
    classes.push_back(static_cast<std::uint8_t>(line % 3));
  }
  LineCounts lines(kWidth, kHeight, 0.75);
  ASSERT_TRUE(lines.count(axes, classes, {{65535, 0, 0}, {0, 65535, 0}}, {}));
  EXPECT_EQ(lines.parts(), 4u);
  EXPECT_EQ(lines.counts(), countedOneByOne(axes, kWidth, kHeight));
  EXPECT_EQ(lines.inks()[40] & 0xff0000ffU, 0xff000000U) << "no blue in red, green and black";
}

}  // namespace
}  // namespace tarvex::test
