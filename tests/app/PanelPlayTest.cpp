// What panels do with the engine, without a toolkit: settings are edited and handed over, what is shown is held, runs
// are found under the pointer, filtered and saved.

#include <gtest/gtest.h>

#include <cmath>

#include "app/RunController.h"
#include "app/ScriptedFrontEnd.h"
#include "app/Selection.h"
#include "base/uniformRandom.h"
#include "factors/Uniform.h"
#include "plots/FigureIndex.h"
#include "plots/FigureLayout.h"
#include "plots/runPlots.h"
#include "sampling/RandomSampler.h"
#include "sampling/SampleFiles.h"
#include "support/TempDirectory.h"
#include "support/TextFiles.h"

namespace tarvex {
namespace {

// A chart on the screen: what it shows, where that stands, and what lies under the pointer.
struct View {
  explicit View(Figure shown) : figure(std::move(shown)), layout(layOut(figure)) {
    EXPECT_TRUE(index.build(figure, layout));
  }
  RunMarks& marks() {
    if (auto* cobweb = std::get_if<CobwebChart>(&figure.charts[0])) return cobweb->runs;
    return std::get<Points>(std::get<XyChart>(figure.charts[0]).layers[0]).runs;
  }
  std::int32_t runAt(double x, double y) const {
    const auto hit = index.hit(x, y, 1.0);
    return hit && hit->kind == Hit::Kind::Run ? hit->number : -1;
  }

  Figure figure;
  FigureLayout layout;
  FigureIndex index;
};

TEST(PanelPlay, fromSettingsToASavedSelection) {
  restoreInitialTrialState();
  const test::TempDirectory directory;
  test::ScriptedFrontEnd frontEnd;
  RunController controller(frontEnd);
  std::string message;

  // Three panels in a row: factors and method, model, run.
  PrepSettings settings;
  ASSERT_TRUE(settings.copyFrom(controller.project().prep, message)) << message;
  for (const char* name : {"a", "b"}) {
    auto factor = std::make_unique<Uniform>();
    factor->name = name;
    settings.factors.addFactor(std::move(factor));
  }
  settings.sampler = std::make_unique<RandomSampler>();
  ASSERT_TRUE(settings.sampler->setSamples(300));
  settings.sampleFile = directory.file("whole.sam");
  PrepSettings edited;
  ASSERT_TRUE(edited.copyFrom(settings, message) && edited.sampler->setSeed(77));
  ModelChoice choice;
  auto equations = std::make_unique<InternalModel>();
  ASSERT_TRUE(equations->addVariable("a") && equations->addVariable("b") && equations->addExpression(0, "y", "a-b", 1));
  choice.setInternalModel(std::move(equations));
  ASSERT_EQ(controller.acceptPrep(std::move(settings)), Outcome::Done);
  ASSERT_EQ(controller.acceptModel(std::move(choice)), Outcome::Done);
  ASSERT_EQ(controller.runModel(RunController::SampleUse::Generated), Outcome::Done);
  ASSERT_EQ(controller.analyse({}), Outcome::Done);
  const auto analysis = controller.analysis();

  // A cobweb, a scattergram and a table on one selection.
  std::shared_ptr<Selection> selection;
  ASSERT_EQ(controller.readRuns({"a", "nothing"}, selection), Outcome::Refused);
  ASSERT_EQ(controller.readRuns({}, selection), Outcome::Done);
  const std::vector<RunColumn>& columns = selection->table()->columns;
  ASSERT_EQ(columns.size(), 3u);
  View cobweb(cobwebPlot(*selection->table(), {}));
  View scatter(scatterPlot(columns[0], columns[2]));
  int told = 0;
  const auto subscription = selection->subscribe([&] {
    ++told;
    for (View* view : {&cobweb, &scatter}) view->marks().dropped = selection->dropped();
  });

  // What the pointer hits is the run whose values stand there.
  const auto& axes = std::get<CobwebLayout>(cobweb.layout.charts[0]).axes;
  const auto& plane = std::get<PlaneLayout>(scatter.layout.charts[0]);
  const auto placeInScatter = [&](std::int32_t run) {
    const auto at = static_cast<std::size_t>(run);
    return std::pair(plane.x(columns[0].values[at]), plane.y(columns[2].values[at]));
  };
  const auto placeInCobweb = [&](std::int32_t run) {
    constexpr double kShare = 0.37;  // of the way from the second axis to the third
    const auto at = static_cast<std::size_t>(run);
    const double from = axes[1].map(columns[1].values[at]);
    return std::pair(axes[1].x + kShare * (axes[2].x - axes[1].x),
                     from + kShare * (axes[2].map(columns[2].values[at]) - from));
  };
  std::vector<std::int32_t> hits;
  for (std::int32_t run = 3; run < 300; run += 11) {
    const auto [x, y] = placeInScatter(run);
    const std::int32_t inScatter = scatter.runAt(x, y);
    EXPECT_EQ(inScatter, run);
    const auto [cx, cy] = placeInCobweb(run);
    const std::int32_t inCobweb = cobweb.runAt(cx, cy);
    ASSERT_GE(inCobweb, 0);
    const auto [hx, hy] = placeInCobweb(inCobweb);
    EXPECT_NEAR(hy, cy, 1e-3) << "another run goes through the same place at most";
    hits.push_back(inScatter);
  }

  // A drag along the first axis keeps its upper part; then only what was hit is taken.
  const auto lower = axisAt(cobweb.layout, axes[0].x, axes[0].map(0.4), 2.0);
  const auto upper = axisAt(cobweb.layout, axes[0].x + 1.0, axes[0].map(0.9), 2.0);
  ASSERT_TRUE(lower && upper && lower->axis == 0 && upper->axis == 0);
  EXPECT_FALSE(selection->setFilter(0, upper->value, lower->value, message));
  EXPECT_EQ(message, "  Upper bound must be greater than lower bound.");
  ASSERT_TRUE(selection->setFilter(0, lower->value, upper->value, message));
  const std::int32_t filtered = selection->keptCount();
  selection->takeRuns(hits);
  EXPECT_EQ(told, 2);
  EXPECT_EQ(scatter.marks().dropped, selection->dropped());
  std::vector<std::int32_t> expected;
  for (const std::int32_t run : hits)
    if (const double a = columns[0].values[static_cast<std::size_t>(run)]; a >= lower->value && a <= upper->value)
      expected.push_back(run);
  EXPECT_EQ(selection->runs(), expected);
  ASSERT_TRUE(expected.size() > 3 && expected.size() < hits.size() && filtered < 300);

  // The saved sample holds just these rows, the table these runs by number.
  EXPECT_EQ(controller.saveSelectedSample(*selection, directory.file("whole.sam")), Outcome::Refused);
  ASSERT_EQ(controller.saveSelectedSample(*selection, directory.file("kept.sam")), Outcome::Done);
  PrepConfiguration saved;
  ASSERT_TRUE(loadSampleFile(directory.file("kept.sam"), saved, message)) << message;
  ASSERT_EQ(saved.samples.rows(), static_cast<std::int32_t>(expected.size()));
  for (std::size_t i = 0; i < expected.size(); ++i)
    for (std::int32_t c = 0; c < 2; ++c) {
      double value = 0.0;
      ASSERT_TRUE(saved.samples.getValue(static_cast<std::int32_t>(i), c, value));
      const double whole = columns[static_cast<std::size_t>(c)].values[static_cast<std::size_t>(expected[i])];
      EXPECT_NEAR(value, whole, std::abs(whole) * 1e-9);
    }

  // The project moves on; what is held stays, and so does what its table says.
  ASSERT_EQ(controller.acceptPrep(std::move(edited)), Outcome::Done);
  ASSERT_EQ(controller.runModel(RunController::SampleUse::Generated), Outcome::Done);
  EXPECT_NE(controller.analysis(), analysis);
  double held = 0.0;
  ASSERT_TRUE(analysis->table->getValue(expected[0], 0, held));
  EXPECT_EQ(held, columns[2].values[static_cast<std::size_t>(expected[0])]);
  EXPECT_EQ(controller.saveSelectedSample(*selection, directory.file("late.sam")), Outcome::Refused);
  ASSERT_EQ(controller.saveSelectedTable(*selection, directory.file("kept.csv")), Outcome::Done);
  std::istringstream csv(test::readFile(directory.file("kept.csv")));
  std::string line;
  ASSERT_TRUE(std::getline(csv, line) && line == "run,a,b,y") << line;
  for (const std::int32_t run : expected) {
    ASSERT_TRUE(std::getline(csv, line));
    EXPECT_EQ(std::stoi(line), run + 1);
    EXPECT_EQ(std::stod(line.substr(line.rfind(',') + 1)), columns[2].values[static_cast<std::size_t>(run)]);
  }
  EXPECT_FALSE(std::getline(csv, line));

  // The others, a frame in the plane, and everything again.
  selection->complement();
  EXPECT_EQ(selection->keptCount(), 300 - static_cast<std::int32_t>(expected.size()));
  EXPECT_FALSE(selection->keeps(expected[0]));
  selection->clear();
  const double edge = columns[2].values[5];
  ASSERT_TRUE(selection->setRegion({0, 0.0, 2.0}, {2, edge - 0.5, edge}, message));
  EXPECT_FALSE(selection->keeps(5)) << "the upper edge of a frame";
  EXPECT_GT(selection->keptCount(), 0);
}

}  // namespace
}  // namespace tarvex
