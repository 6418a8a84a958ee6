#include <QCheckBox>
#include <QListWidget>
#include <QSlider>
#include <QTabWidget>
#include <cmath>
#include <numeric>
#include <set>

#include "app/Selection.h"
#include "factors/makeFactor.h"
#include "model/ModelConfiguration.h"
#include "panels/MainPanelFixture.h"
#include "panels/plots/PCobSelect.h"
#include "panels/plots/PCobwebs.h"
#include "panels/plots/PHistogram.h"
#include "panels/plots/PPlots.h"
#include "panels/plots/PScatter.h"
#include "panels/plots/PSingleFactor.h"
#include "panels/plots/figurePanels.h"
#include "panels/vels/PForecast.h"
#include "panels/vels/PSaSingle.h"
#include "panels/vels/PUaSingle.h"
#include "panels/vels/PVelsMain.h"
#include "panels/vels/PVisualSA.h"
#include "panels/vels/ResultDesk.h"
#include "panels/vels/openSensitivity.h"
#include "plots/timePlots.h"
#include "postproc/OutputReference.h"
#include "postproc/PostProcessorFile.h"
#include "postproc/VelsConfiguration.h"
#include "sampling/SamplerFactory.h"
#include "toolkit/ChartView.h"

// All panels of results over studies of every shape, the unlikely ones first of all.
namespace tarvex {
namespace {

using Texts = std::vector<std::string>;
using Value = double (*)(int run, int output);

double straight(int run, int output) {
  return run * (output + 1.0);
}
double constant(int, int) {
  return 3.0;
}
double missing(int, int) {
  return std::nan("");
}
double infinite(int run, int) {
  return run == 0 ? HUGE_VAL : run;
}

class ResultStudies : public test::MainPanelTest {
 protected:
  // A random sample and outputs of these names, opened as the project.
  void make(int factors, int runs, const Texts& outputs, Value value, const Texts& selected = {}, int timeCount = 1) {
    PrepConfiguration prep;
    for (int i = 1; i <= factors; ++i) {
      auto factor = makeFactor("Uniform");
      factor->name = "x" + std::to_string(i);
      prep.factors.addFactor(std::move(factor));
    }
    prep.sampler = makeSampler(kRandom);
    prep.sampler->numSamples = runs;
    ASSERT_TRUE(prep.prepareGeneration());
    ASSERT_EQ(prep.generate(100), 100);
    ModelConfiguration model;
    model.results.reset(outputs);
    std::vector<double> times = ModelResults::singleTime();
    for (int i = 1; i < timeCount; ++i) times.push_back(times.back() + 1.0);
    std::vector<double> row(outputs.size() * times.size());
    for (int run = 0; run < runs; ++run) {
      for (std::size_t i = 0; i < row.size(); ++i) row[i] = value(run, static_cast<int>(i));
      ASSERT_TRUE(model.results.appendRun(times, row));
    }
    if (timeCount > 1) model.results.findTimeMode();
    VelsConfiguration vels;
    std::string message;
    ASSERT_TRUE(vels.setOutputs(outputs, message)) << message;
    for (const std::string& text : selected) ASSERT_TRUE(vels.addVariable(text));
    vels.prepareSensitivity(kRandom);
    ASSERT_TRUE(savePostProcessorFile(file("study.spc"), prep, model, vels, message)) << message;
    ASSERT_EQ(controller().loadResultsFile(file("study.spc")), Outcome::Done) << testing::PrintToString(dialogs_.shown);
  }
  // Each is as small as a small screen, and its title is one that can be read.
  void lookAtAll() {
    for (Panel* const panel : desk_.panels()) {
      SCOPED_TRACE(panel->name().toStdString());
      QApplication::processEvents();
      const QSize least = panel->window()->minimumSizeHint().expandedTo(panel->window()->minimumSize());
      EXPECT_TRUE(least.width() <= 1024 && least.height() <= 700) << least.width() << 'x' << least.height();
      EXPECT_LE(panel->window()->windowTitle().size(), 120);
      for (auto* const chart : panel->window()->findChildren<ChartView*>())
        if (chart->isVisible() && chart->figure().charts.empty()) sentences_.insert(chart->figure().emptyText);
    }
  }
  // In every panel of results that there is.
  void openAll() {
    ASSERT_EQ(controller().selectVariables(controller().project().vels.outputNames(controller().project().model)),
              Outcome::Done);
    desk_.open(std::make_unique<PVelsMain>(desk_, [] {}));
    static_cast<void>(controller().analyse({.sensitivity = false}));  // what can't be computed is told
    if (controller().analysis()->uncertainty.variableCount() > 0)
      desk_.open(std::make_unique<PUaSingle>(desk_, controller().analysis(), 0));
    for (int page = 0; page < 3 && !desk_.panels().empty(); ++page)
      if (auto* const pages = desk_.panels().back()->window()->findChild<QTabWidget*>("NoVariable"))
        pages->setCurrentIndex(2 - page);
    openSensitivity(desk_);
    const std::shared_ptr<Selection> selection = desk_.selection();
    ASSERT_TRUE(selection);
    std::vector<std::size_t> all(selection->table()->columns.size());
    std::iota(all.begin(), all.end(), 0);
    desk_.open(std::make_unique<PPlots>(desk_, selection));
    desk_.open(std::make_unique<PScatter>(desk_, selection, 0, all.back()));
    desk_.open(std::make_unique<PCobwebs>(desk_, selection, all));
    desk_.open(std::make_unique<PHistogram>(desk_, selection, all));
    desk_.open(std::make_unique<PSingleFactor>(desk_, selection, all.back()));
    desk_.open(std::make_unique<PVisualSA>(desk_, selection));
    if (all.size() <= 4) openScatterMatrix(desk_, selection, all);
    const PCobSelect bounds(display_, *selection->table(), all, {}, nullptr);
    EXPECT_LE(bounds.window()->minimumSizeHint().width(), 1024);
    lookAtAll();
  }

  ResultDesk desk_{display_, controller(), nullptr};
  std::set<std::string> sentences_;
};

TEST_F(ResultStudies, EveryShapeIsShownOrSaidNotToBe) {
  Texts many, longOnes;
  for (int i = 0; i < 500; ++i) many.push_back("out" + std::to_string(i));
  for (const char first : {'p', 'q'}) longOnes.push_back(first + std::string(249, 'n'));
  const struct {
    const char* name;
    int factors, runs;
    Texts outputs;
    Value value;
    const char* sentence;  // where a picture would be; empty: all have one
  } studies[] = {
      {"constant", 2, 20, {"Y"}, constant, ""},      {"all nan", 2, 20, {"Y"}, missing, "No values to show."},
      {"infinite", 2, 20, {"Y"}, infinite, ""},      {"one run", 2, 1, {"Y"}, straight, ""},
      {"long names", 2, 20, longOnes, straight, ""}, {"370 factors", 370, 20, {"Y"}, straight, ""},
      {"500 outputs", 2, 20, many, straight, ""}};
  for (const auto& study : studies) {
    SCOPED_TRACE(study.name);
    sentences_.clear();
    ASSERT_NO_FATAL_FAILURE(make(study.factors, study.runs, study.outputs, study.value));
    openAll();
    const std::string said = testing::PrintToString(sentences_);
    if (*study.sentence != '\0') {
      EXPECT_NE(said.find(study.sentence), std::string::npos) << said;
    }
    for (Panel* const panel : desk_.panels()) panel->hide();
  }
}

TEST_F(ResultStudies, WhatIsNotThereIsSaid) {
  openSensitivity(desk_);
  EXPECT_EQ(takeShown().size(), 1U) << "no results";
  ASSERT_NO_FATAL_FAILURE(make(2, 20, {"Y"}, straight, {"gone", "Y"}));
  dialogs_.shown.clear();
  PVelsMain panel(desk_, [] {});
  panel.call("ua");
  openSensitivity(desk_);
  const Texts shown = takeShown();
  ASSERT_EQ(shown.size(), 2U);
  for (const std::string& text : shown) EXPECT_NE(text.find("gone"), std::string::npos) << text;
  EXPECT_TRUE(desk_.panels().empty());
}

// One slider moves all windows; what a shell draws is what the page shows.
TEST_F(ResultStudies, TheSliderPicksTheTimeOfAllWindows) {
  ASSERT_EQ(controller().loadResultsFile(test::goldenPath("times-run.spc")), Outcome::Done);
  const ProjectConfiguration& project = controller().project();
  const Texts outputs = project.vels.outputNames(project.model);
  const std::vector<double> times = resultTimes(project.model.results);
  ASSERT_GE(times.size(), 3U);
  Texts variables{maximumName(outputs[0])};
  for (std::size_t i = 0; i < 3; ++i) variables.push_back(timeName(outputs[0], times[i]));
  ASSERT_EQ(controller().selectVariables(variables), Outcome::Done);
  ASSERT_EQ(controller().analyse({.variables = variables}), Outcome::Done);
  const std::shared_ptr<Selection> selection = desk_.selection();
  const auto column = [&](const std::string& name) {
    const auto& columns = selection->table()->columns;
    return static_cast<std::size_t>(std::ranges::find(columns, name, &RunColumn::name) - columns.begin());
  };
  desk_.open(std::make_unique<PUaSingle>(desk_, controller().analysis(), 1));
  desk_.open(std::make_unique<PSingleFactor>(desk_, selection, column(variables[1])));
  openSensitivity(desk_);
  desk_.open(std::make_unique<PSaSingle>(desk_, controller().analysis(), 1));
  desk_.open(std::make_unique<PForecast>(desk_, controller().analysis(), 1, 0, 0));
  desk_.open(std::make_unique<PVisualSA>(desk_, selection));
  desk_.open(std::make_unique<PScatter>(desk_, selection, 0, column(variables[1])));
  desk_.open(std::make_unique<PCobwebs>(desk_, selection, std::vector{std::size_t{0}, column(variables[1])}));
  ASSERT_EQ(desk_.panels().size(), 8U);
  std::string message;
  ASSERT_TRUE(selection->setFilter(0, -1e9, 1e9, message) &&
              selection->setFilter(column(variables[1]), -1.0, 2.0, message) &&
              selection->setRegion({0, -5.0, 5.0}, {column(variables[1]), -3.0, 4.0}, message));
  Panel& single = *desk_.panels()[0];
  Panel& histogram = *desk_.panels()[1];
  Panel& measures = *desk_.panels()[2];
  Panel& visual = *desk_.panels()[5];
  for (int row = 1; row < 3; ++row) visual.gadget<QListWidget>("SlAvailVar")->item(row)->setSelected(true);
  visual.call("right");
  EXPECT_FALSE(measures.gadget<QSlider>("HsTime")->isEnabled()) << "its variable is a maximum";
  measures.gadget<QComboBox>("ScPieName")->setCurrentIndex(1);
  measures.call("changeVariable");
  QTest::keyClick(single.gadget<QSlider>("HsTime"), Qt::Key_Right);
  QTest::keyClick(measures.gadget<QSlider>("HsTime"), Qt::Key_Right);
  const QString third = QString::fromStdString(variables[3]);
  EXPECT_EQ(single.gadget<QComboBox>("OVariable")->currentText(), third);
  EXPECT_EQ(measures.gadget<QComboBox>("ScPieName")->currentText(), third);
  EXPECT_EQ(histogram.gadget<QComboBox>("OFactor")->currentText(), "V - " + third);
  for (const std::size_t panel : {0, 3, 4, 5, 6, 7})
    EXPECT_TRUE(desk_.panels()[panel]->gadget<QLabel>("MlTime")->text().endsWith("time 3 of 3")) << panel;
  EXPECT_EQ(desk_.panels()[3]->gadget<QLabel>("MlTitle")->text(), "All measures of " + third);
  EXPECT_TRUE(desk_.panels()[4]->gadget<ChartView>("ChForecast")->figure().subtitle.starts_with(variables[3]));
  EXPECT_EQ(visual.gadget<QListWidget>("SlSelected")->item(0)->text(), "V - " + third);
  EXPECT_EQ(visual.gadget<QListWidget>("SlSelected")->item(1)->text(), "V - " + QString::fromStdString(variables[2]))
      << "two columns don't become the same";
  EXPECT_EQ(desk_.panels()[6]->gadget<QComboBox>("OSecond")->currentText(), "V - " + third);
  EXPECT_EQ(
      std::get<CobwebChart>(desk_.panels()[7]->gadget<ChartView>("TeBackground")->figure().charts.at(0)).axes[1].name,
      variables[3]);
  ASSERT_EQ(selection->filters().size(), 2U) << "the filters go with their axes";
  EXPECT_EQ(selection->filters()[0].column, 0U);
  EXPECT_EQ(selection->filters()[1].column, column(variables[3]));
  EXPECT_EQ(selection->filters()[1].upper, 2.0);
  EXPECT_EQ(selection->region()[1].column, column(variables[3])) << "and so does the region";
  EXPECT_EQ(selection->region()[1].lower, -3.0);

  single.gadget<QTabWidget>("NoVariable")->setCurrentIndex(3);
  TimeBands bands;
  ASSERT_TRUE(computeTimeBands(project.model, outputs, outputs[0], bands, message)) << message;
  const Figure& shown = single.gadget<ChartView>("ScTimes")->figure();
  ASSERT_EQ(shown.charts.size(), 1U);
  EXPECT_EQ(std::get<Line>(std::get<XyChart>(shown.charts[0]).layers[3]).y, bands.means);
  EXPECT_EQ(std::get<Line>(std::get<XyChart>(shown.charts[0]).layers[4]).x[0], times[2]);

  EXPECT_FALSE(single.gadget<QCheckBox>("TLogTime")->isEnabled());
  EXPECT_TRUE(single.gadget<QCheckBox>("TLogTime")->toolTip().contains("the first one is 0"));

  // Of earlier results, and of results without times.
  ASSERT_EQ(controller().loadResultsFile(test::goldenPath("ishigami-run.spc")), Outcome::Done);
  single.gadget<QComboBox>("OVariable")->setCurrentIndex(0);
  single.call("chooseVariable");
  EXPECT_EQ(single.gadget<ChartView>("ScTimes")->figure().charts.size(), 1U) << "what it has stays";
  PHistogram other(desk_, desk_.selection(), {0});
  EXPECT_FALSE(other.gadget<QSlider>("HsTime")->isVisibleTo(other.window()));
  EXPECT_TRUE(desk_.panels()[3]->gadget<QLabel>("MlTitle")->text().contains("Past: "));
  EXPECT_TRUE(desk_.panels()[4]->gadget<QLabel>("MlForecast")->text().contains("Past: "));
}

TEST_F(ResultStudies, APanelStaysOpenUntilItsWorkIsThrough) {
  ASSERT_NO_FATAL_FAILURE(make(1, 5000, {"Y"}, straight, {}, 100));
  ASSERT_EQ(controller().analyse({.variables = {"Y[max]"}}), Outcome::Done);
  desk_.open(std::make_unique<PUaSingle>(desk_, controller().analysis(), 0));
  Panel& panel = *desk_.panels().back();
  QString said;
  QTimer::singleShot(0, panel.window(), [&] {
    panel.window()->close();
    said = panel.gadget<QLabel>("MlMessage")->text();
  });
  panel.gadget<QTabWidget>("NoVariable")->setCurrentIndex(3);
  EXPECT_EQ(said, "Stop what is in progress first.");
  ASSERT_EQ(desk_.panels().size(), 1U);
  EXPECT_EQ(panel.gadget<ChartView>("ScTimes")->figure().charts.size(), 1U);
  panel.window()->close();
  EXPECT_TRUE(desk_.panels().empty());
}

// The picture alone: the saved table has all in any case.
TEST_F(ResultStudies, AllBinsAreShownWhenAskedFor) {
  ASSERT_NO_FATAL_FAILURE(make(2, 50, {"Y"}, straight));
  ASSERT_EQ(controller().analyse({.variables = {"Y"}}), Outcome::Done);
  PUaSingle panel(desk_, controller().analysis(), 0);
  const auto columns = [&panel] {
    const Figure& figure = panel.gadget<ChartView>("TBackground")->figure();
    return std::get<Area>(std::get<XyChart>(figure.charts.at(0)).layers.at(0)).heights.size();
  };
  EXPECT_LT(columns(), 30U);
  panel.gadget<QCheckBox>("TAllBins")->click();
  EXPECT_EQ(columns(), 101U);
}

}  // namespace
}  // namespace tarvex
