#include <QCheckBox>
#include <QListWidget>
#include <QTabWidget>
#include <ostream>

#include "base/TextWriter.h"
#include "panels/MainPanelFixture.h"
#include "panels/vels/PSaResult.h"
#include "panels/vels/PVelsMain.h"
#include "panels/vels/ResultDesk.h"
#include "panels/vels/openSensitivity.h"
#include "postproc/RegressionStats.h"
#include "postproc/SavedTables.h"
#include "toolkit/ChartView.h"
#include "toolkit/TableView.h"

namespace tarvex {
namespace {

using Texts = std::vector<std::string>;

// The real panels over golden results.
class SensitivityPanels : public test::MainPanelTest {
 protected:
  // The panel of the results of a golden file, of all outputs where the file selects none.
  Panel& open(const std::string& golden, Texts variables = {}) {
    EXPECT_EQ(controller().loadResultsFile(test::goldenPath(golden)), Outcome::Done);
    if (!variables.empty()) {
      EXPECT_EQ(controller().selectVariables(variables), Outcome::Done);
    }
    openSensitivity(desk_);
    return last();
  }
  Panel& last() {
    EXPECT_FALSE(desk_.panels().empty()) << testing::PrintToString(dialogs_.shown);
    return *desk_.panels().back();
  }
  static std::string said(Panel& panel, const char* label) { return panel.gadget<QLabel>(label)->text().toStdString(); }
  static void choose(Panel& panel, const char* list, int entry, const char* callback) {
    panel.gadget<QComboBox>(list)->setCurrentIndex(entry);
    panel.call(callback);
  }
  static Texts column(Panel& panel, const char* sheet, int number) {
    const TableModel& model = panel.gadget<TableView>(sheet)->tableModel();
    Texts texts;
    for (int row = 0; row < model.rowCount(); ++row)
      texts.push_back(model.index(row, number).data().toString().toStdString());
    return texts;
  }
  static const Figure& figure(Panel& panel, const char* chart = "ChIndexes") {
    return panel.gadget<ChartView>(chart)->figure();
  }
  static Texts bars(Panel& panel) { return std::get<BarChart>(figure(panel).charts.front()).categories; }
  std::string saved(Panel& panel, const char* callback = "saveTable") {
    dialogs_.files = {file("table.txt")};
    panel.call(callback);
    return test::readFile(file("table.txt"));
  }
  // What tarvex-batch writes of the first variable.
  std::string batchTable(const std::string& word) {
    const auto snapshot = controller().analysis();
    const SensitivityStats& stats = *snapshot->sensitivity;
    for (const SavedTable& table :
         savedTables(stats, controller().project().prep, wholeTable(stats, 0, snapshot->variables.front()))) {
      if (table.word != word) continue;
      TextWriter out(file("batch.txt"));
      table.write(out);
      EXPECT_TRUE(out.commit());
      return test::readFile(file("batch.txt"));
    }
    return "no table " + word;
  }

  ResultDesk desk_{display_, controller(), panel_->window()};
};

struct Result {
  const char* golden;
  const char* panel;
  const char* table;                                        // its word among the saved ones
  std::vector<std::pair<const char*, const char*>> sheets;  // and the headings of their columns
  const char* forms;
};

void PrintTo(const Result& result, std::ostream* out) {
  *out << result.golden;
}

class EveryMethod : public SensitivityPanels, public testing::WithParamInterface<Result> {};

TEST_P(EveryMethod, hasItsPanelWithTheNumbersOfTheBatchProgram) {
  const Result& result = GetParam();
  Panel& panel = open(result.golden);
  EXPECT_EQ(panel.name(), result.panel);
  EXPECT_EQ(panel.window()->windowTitle(), "Sensitivity Analysis");
  const auto snapshot = controller().analysis();
  for (const auto& [sheet, headings] : result.sheets) {
    const TableSource& source = *panel.gadget<TableView>(sheet)->tableModel().source();
    QStringList shown;
    for (int i = 0; i < source.columns(); ++i) shown << source.header(i);
    EXPECT_EQ(shown.join('|'), headings);
    Texts names;
    for (const IndexRecord& record : snapshot->sensitivity->records) names.push_back(record.name);
    EXPECT_EQ(column(panel, sheet, 0), names);
  }
  QStringList forms;
  auto* const list = panel.gadget<QComboBox>("OForm");
  for (int i = 0; i < list->count(); ++i) {
    forms << list->itemText(i);
    choose(panel, "OForm", i, "changePie");
    EXPECT_EQ(panel.gadget<ChartView>(result.sheets.size() > 1 ? "FastPieFirst" : "ChIndexes")->figure().charts.empty(),
              forms.back() == "Over time");
  }
  EXPECT_EQ(forms.join('|'), result.forms);
  EXPECT_EQ(saved(panel), batchTable(result.table));
  saved(panel, "saveImg");
  EXPECT_EQ(test::readFile(file("table.txt")).substr(0, 4), "%!PS");

  auto* const view = panel.gadget<TableView>(result.sheets.front().first);
  view->setCurrentIndex(view->tableModel().index(0, 0));
  panel.call("doppioClick");
  EXPECT_EQ(last().name(), "Forecast");
  EXPECT_EQ(said(last(), "MlForecast").find(column(panel, result.sheets.front().first, 0).front() + ": "), 0U);
}

const Result kResults[] = {
    {"ishigami.spc", "StdSA", "PEAR", {{"ShIndexes", "Factor|PEAR|Rank|Significance"}}, "Bars|Over time"},
    {"morris.spc", "MorrisSA", "sensitivity", {{"ShIndexes", "Factor|Morris Index|Sigma"}}, "Plane|Bars|Over time"},
    {"unit-classic.spc", "FastSA", "sensitivity", {{"ShIndexes", "Factor|First Order"}}, "Bars|Pies|Over time"},
    {"unit-extended.spc",
     "FastSATO",
     "sensitivity",
     {{"ShFirst", "Factor|First Order"}, {"ShTotal", "Factor|Total Order"}},
     "First order and interactions|Bars|Pies|Over time"},
    {"fast-groups.spc",
     "FastSATO",
     "sensitivity",
     {{"ShFirst", "Factor|First Order (on groups)"}, {"ShTotal", "Factor|Total Order (on groups)"}},
     "First order and interactions|Bars|Pies|Over time"},
    {"pair.spc", "Importance Measures", "sensitivity", {{"ShIndexes", "Factor|Importance"}}, "Bars|Pies|Over time"},
    {"unit-sobol.spc",
     "Sobol Indices",
     "sensitivity",
     {{"ShIndexes", "Factor|First Order|Total Order"}},
     "First order and interactions|Bars|Pies|Over time"},
    {"unit-order2.spc",
     "Sobol Indices",
     "sensitivity",
     {{"ShIndexes", "Factor|Index|Total|Closed"}},
     "First order and interactions|Bars|Pies|Over time"},
};
INSTANTIATE_TEST_SUITE_P(, EveryMethod, testing::ValuesIn(kResults));

// The measures aren't there yet: the file is the one that the batch program makes with the level from the start.
TEST_F(SensitivityPanels, computeWhatIsMissingAndDecideSignificanceAnew) {
  Panel& panel = open("ishigami-run.spc", {"y"});
  const std::shared_ptr<const AnalysisSnapshot> before = controller().analysis();
  EXPECT_EQ(said(panel, "MlTitle"), "Value of the PEARs vs. selected factors");
  choose(panel, "OAlpha", 1, "alphaChanged");
  EXPECT_EQ(said(panel, "MlState"), "") << "another level is of the same runs";
  ASSERT_EQ(controller().saveResultsFile(file("x.spc")), Outcome::Done);
  EXPECT_TRUE(test::compareGolden("ishigami-alpha.spc", test::readFile(file("x.spc"))));
  choose(panel, "OAlpha", 6, "alphaChanged");
  EXPECT_EQ(panel.gadget<QComboBox>("OAlpha")->currentIndex(), 5) << "the seventh level is the sixth";
  const auto now = controller().analysis();
  EXPECT_EQ(static_cast<const RegressionStats&>(*now->sensitivity).alpha, 0.995F);
  EXPECT_NE(now, before);
  choose(panel, "OIndex", RegressionStats::kSrrc, "indexChanged");
  EXPECT_EQ(saved(panel), batchTable("SRRC"));
  ASSERT_EQ(controller().loadResultsFile(test::goldenPath("morris.spc")), Outcome::Done);
  EXPECT_NE(said(panel, "MlState"), "");
  takeShown();
  choose(panel, "OAlpha", 0, "alphaChanged");
  EXPECT_EQ(panel.gadget<QComboBox>("OAlpha")->currentIndex(), 5);
  EXPECT_EQ(takeShown(), Texts()) << "nothing is decided of other results";
  EXPECT_EQ(saved(panel).find("Value of the SRRCs"), 0U) << "a panel of the past goes on showing its own";
}

TEST_F(SensitivityPanels, rankTheFactorsAsBarsWithOneClickOfThePostProcessor) {
  ASSERT_EQ(controller().loadResultsFile(test::goldenPath("plant-run.spc")), Outcome::Done);
  ASSERT_EQ(controller().selectVariables({"power"}), Outcome::Done);
  PVelsMain vels(desk_, [] {});
  vels.call("sa");
  std::vector<double> sizes;
  for (const Bar& bar : std::get<BarChart>(figure(last()).charts.front()).series.front())
    sizes.push_back(bar.faint ? -1.0 : std::abs(bar.value));
  EXPECT_EQ(sizes.size(), 20U);
  EXPECT_TRUE(std::ranges::is_sorted(sizes, std::greater())) << testing::PrintToString(sizes);
}

TEST_F(SensitivityPanels, sortScaleAndChooseWhatIsShown) {
  Panel& panel = open("unit-order2.spc");
  choose(panel, "OForm", 1, "changePie");
  const Texts byValue = bars(panel);
  choose(panel, "OOrder", 2, "changeOrder");
  EXPECT_EQ(bars(panel), column(panel, "ShIndexes", 0));
  EXPECT_NE(byValue, bars(panel));
  const Texts before = column(panel, "ShIndexes", 1);
  const auto sum = [&] {
    const TableSource& source = *panel.gadget<TableView>("ShIndexes")->tableModel().source();
    double total = 0.0;
    for (int row = 0; row < source.rows(); ++row) total += source.number(row, 1);
    return total;
  };
  EXPECT_GT(std::abs(sum() - 1.0), 1e-6);
  panel.gadget<QCheckBox>("ChNorm")->setChecked(true);
  panel.call("switchNorm");
  EXPECT_NEAR(sum(), 1.0, 1e-12);
  EXPECT_EQ(saved(panel), batchTable("sensitivity")) << "a file holds the measures themselves";
  panel.gadget<QCheckBox>("ChNorm")->setChecked(false);
  panel.call("switchNorm");
  EXPECT_EQ(column(panel, "ShIndexes", 1), before);

  QTimer::singleShot(0, [] {
    for (QWidget* const top : QApplication::topLevelWidgets()) {
      if (top->objectName() != "SelWin" || !top->isVisible()) continue;
      const auto press = [&](const char* callback) {
        for (auto* const button : top->findChildren<QPushButton*>())
          if (button->property("callback").toString() == callback && button->isVisible()) return button->click();
      };
      press("removeAll");
      EXPECT_FALSE(top->findChild<QPushButton*>("BOk")->isEnabled()) << "nothing would be shown";
      QWidget* const page = top->findChild<QTabWidget*>("NoSelect")->currentWidget();
      page->findChild<QListWidget*>("SlAvailable")->item(2)->setSelected(true);
      press("right");
      press("ok");
    }
  });
  panel.call("visualize");
  EXPECT_EQ(bars(panel).size(), 1U);
  EXPECT_EQ(column(panel, "ShIndexes", 0), bars(panel));
}

// Constants keep their row, a constant output has no measures, expressions stand beside outputs.
TEST_F(SensitivityPanels, tellWhatHasNoMeasure) {
  Panel& panel = open("plant.spc");
  Texts kinds = column(panel, "ShIndexes", 1);
  EXPECT_EQ(std::ranges::count(kinds, "Constant"), 3);
  EXPECT_EQ(std::ranges::count(kinds, "Related factor"), 2);
  choose(panel, "ScPieName", 2, "changeVariable");
  EXPECT_FALSE(figure(panel).charts.empty());
  choose(panel, "OIndex", RegressionStats::kPcc, "indexChanged");
  choose(panel, "ScPieName", 0, "changeVariable");
  EXPECT_EQ(std::ranges::count(column(panel, "ShIndexes", 3), "no test"), 15);
  panel.call("allMeasures");
  EXPECT_EQ(last().name(), "SaSingle");
  EXPECT_EQ(saved(last()).find(std::string(14, ' ') + "Factor\t"), 0U);
}

TEST_F(SensitivityPanels, drawCurvesOfAnOutputAtItsTimes) {
  Panel& panel = open("times-run.spc", {"dose[1]", "rate[1.5]", "dose[0.5]", "dose[max]"});
  choose(panel, "OForm", 1, "changePie");
  ASSERT_EQ(figure(panel).charts.size(), 1U);
  const auto& line = std::get<Line>(std::get<XyChart>(figure(panel).charts.front()).layers.front());
  EXPECT_EQ(line.x, (std::vector<double>{0.5, 1.0}));
  choose(panel, "ScPieName", 1, "changeVariable");
  EXPECT_TRUE(figure(panel).charts.empty()) << "one time is no curve";
}

TEST_F(SensitivityPanels, showFactorsAndVariablesTogether) {
  Panel& results = open("ishigami.spc");
  results.call("visualSA");
  Panel& panel = last();
  ASSERT_EQ(panel.name(), "VisualSA");
  auto* const variables = panel.gadget<QListWidget>("SlAvailVar");
  EXPECT_EQ(variables->item(0)->text(), "V - y");
  EXPECT_FALSE(panel.gadget<QPushButton>("BScatter")->isEnabled());
  panel.gadget<QListWidget>("SlAvailFac")->item(1)->setSelected(true);
  variables->item(0)->setSelected(true);
  panel.call("right");
  panel.call("scatter");
  EXPECT_EQ(last().name(), "Scattergram");
  panel.call("cobwebs");
  EXPECT_EQ(last().name(), "Cobwebs");
  EXPECT_EQ(std::ranges::count(saved(panel), '\n'), 201);
}

TEST_F(SensitivityPanels, sayWhyNothingOpens) {
  openSensitivity(desk_);
  EXPECT_NE(takeShown().front().find("There are no results yet"), std::string::npos);
  ASSERT_EQ(controller().loadResultsFile(test::goldenPath("ishigami-run.spc")), Outcome::Done);
  openSensitivity(desk_);
  EXPECT_EQ(takeShown(), (Texts{"Error:    No variable selected."}));
  EXPECT_TRUE(desk_.panels().empty());
}

}  // namespace
}  // namespace tarvex
