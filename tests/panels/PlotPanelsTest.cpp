#include <QCheckBox>
#include <QListWidget>
#include <QMouseEvent>
#include <QTabWidget>

#include "app/Selection.h"
#include "panels/MainPanelFixture.h"
#include "panels/plots/PCobSelect.h"
#include "panels/plots/PCobwebs.h"
#include "panels/plots/PHistogram.h"
#include "panels/plots/PPicture.h"
#include "panels/plots/PPlots.h"
#include "panels/plots/PScatter.h"
#include "panels/plots/PSingleFactor.h"
#include "panels/vels/ResultDesk.h"
#include "toolkit/ChartView.h"
#include "toolkit/TableView.h"

namespace tarvex {
namespace {

using Texts = std::vector<std::string>;

class PlotPanels : public test::MainPanelTest {
 protected:
  PlotPanels() : desk_(display_, controller(), nullptr) {
    EXPECT_EQ(controller().loadResultsFile(test::goldenPath("ishigami-run.spc")), Outcome::Done);
    selection_ = desk_.selection();
  }
  // The last window that was opened; null when it is none of the kind.
  template <class Kind>
  Kind* opened() {
    const std::vector<Panel*> panels = desk_.panels();
    return panels.empty() ? nullptr : dynamic_cast<Kind*>(panels.back());
  }
  static std::string kept(Panel& panel) { return panel.gadget<QLabel>("MlKept")->text().toStdString(); }
  static void drag(QWidget& view, const QPoint& from, const QPoint& to) {
    QTest::mousePress(&view, Qt::LeftButton, {}, from);
    for (const QPoint& at : {(from + to) / 2, to}) {
      QMouseEvent move(QEvent::MouseMove, at, view.mapToGlobal(at), Qt::NoButton, Qt::LeftButton, {});
      QApplication::sendEvent(&view, &move);
    }
    QTest::mouseRelease(&view, Qt::LeftButton, {}, to);
  }
  std::size_t columns() const { return selection_->table()->columns.size(); }

  ResultDesk desk_;
  std::shared_ptr<Selection> selection_;
};

TEST_F(PlotPanels, ABrushInOneWindowIsSeenInAll) {
  ASSERT_TRUE(selection_);
  ASSERT_EQ(columns(), 4U);
  const std::int32_t runs = selection_->table()->runs;
  desk_.open(std::make_unique<PCobwebs>(desk_, selection_, std::vector<std::size_t>{0, 1, 3}));
  auto* const cobwebs = opened<PCobwebs>();
  desk_.open(std::make_unique<PScatter>(desk_, selection_, 0, 3));
  auto* const scatter = opened<PScatter>();
  desk_.open(std::make_unique<PPlots>(desk_, selection_));
  auto* const plots = opened<PPlots>();
  ASSERT_TRUE(cobwebs != nullptr && scatter != nullptr && plots != nullptr);
  plots->gadget<QTabWidget>("NoPlots")->setCurrentIndex(1);
  auto* const web = cobwebs->gadget<ChartView>("TeBackground");
  web->resize(600, 400);
  QApplication::processEvents();
  // The left axis, over the upper half of its height.
  drag(*web, {web->width() / 6, web->height() / 3}, {web->width() / 6, web->height() / 2});
  ASSERT_EQ(selection_->filters().size(), 1U) << "a drag on an axis is a filter of its column";
  EXPECT_EQ(selection_->filters()[0].column, 0U);
  const std::int32_t brushed = selection_->keptCount();
  EXPECT_GT(brushed, 0);
  EXPECT_LT(brushed, runs);
  const std::string text = std::to_string(brushed) + " of " + std::to_string(runs) + " runs";
  for (Panel* const panel : desk_.panels()) EXPECT_EQ(kept(*panel), text);
  EXPECT_EQ(plots->gadget<TableView>("MaSamples")->tableModel().rowCount(), brushed);
  const auto& points = std::get<Points>(
      std::get<XyChart>(scatter->gadget<ChartView>("SpSamples")->figure().charts.front()).layers.front());
  EXPECT_EQ(points.runs.dropped, selection_->dropped());

  // A region of the scattergram joins it; the complement keeps all the others.
  auto* const plane = scatter->gadget<ChartView>("SpSamples");
  drag(*plane, {plane->width() / 4, plane->height() / 4}, {plane->width() / 2, plane->height() * 3 / 4});
  EXPECT_EQ(selection_->region().size(), 2U);
  EXPECT_LE(selection_->keptCount(), brushed);
  const std::int32_t both = selection_->keptCount();
  scatter->call("complement");
  EXPECT_EQ(selection_->keptCount(), runs - both);
  EXPECT_TRUE(web->brush().empty()) << "no filter is left";
  scatter->call("allRuns");
  EXPECT_EQ(selection_->keptCount(), runs);
  EXPECT_FALSE(scatter->gadget<QPushButton>("BAllRuns")->isEnabled());

  // Another sample: the windows stay, say so, and save no sample any more.
  choose("oldGeneration", test::goldenPath("ishigami.sam"));
  for (Panel* const panel : desk_.panels())
    EXPECT_TRUE(panel->gadget<QLabel>("MlMessage")->text().contains("have changed since"));
  EXPECT_FALSE(scatter->gadget<QPushButton>("BSave")->isEnabled());
  EXPECT_NE(desk_.selection(), selection_);
}

TEST_F(PlotPanels, KeptRunsAreSavedAndCounted) {
  ASSERT_TRUE(selection_);
  PScatter scatter(desk_, selection_, 0, 1);
  std::string message;
  ASSERT_TRUE(selection_->setRegion({0, 100.0, 101.0}, {1, 100.0, 101.0}, message));
  dialogs_.files = {file("none.sam"), file("none.csv")};
  scatter.call("save");
  scatter.call("saveRuns");
  const std::string total = std::to_string(selection_->table()->runs);
  EXPECT_EQ(takeShown(), (Texts{"Save selected samples: save *.sam *.*",
                                "Save selected samples: Total samples: " + total + "\nSaved samples: 0",
                                "Save selected runs: save *.csv *.*"}));
  EXPECT_EQ(test::readFile(file("none.csv")), "run,x1,x2,x3,y\n");
  EXPECT_TRUE(test::readFile(file("none.sam")).starts_with("0\n"));
}

TEST_F(PlotPanels, FiltersAreTypedAndJudgedWhenApplied) {
  ASSERT_TRUE(selection_);
  PCobSelect panel(display_, *selection_->table(), {0, 3}, {}, nullptr);
  const auto type = [&](const char* field, const char* text) {
    auto* const edit = panel.gadget<QLineEdit>(field);
    edit->clear();
    QTest::keyClicks(edit, text);
  };
  const auto axis = [&](int number) {
    panel.gadget<QComboBox>("OAxis")->setCurrentIndex(number);
    panel.call("choose");
  };
  type("NLowerBound", "1");
  type("NUpperBound", "1");
  axis(1);
  panel.call("apply");
  EXPECT_EQ(takeShown(), Texts{"Error:   Upper bound must be greater than lower bound."});
  EXPECT_EQ(panel.gadget<QComboBox>("OAxis")->currentIndex(), 0) << "the axis that is wrong";
  EXPECT_FALSE(panel.accepted());
  type("NUpperBound", "2.5");
  axis(1);
  axis(0);
  EXPECT_EQ(panel.gadget<QLineEdit>("NUpperBound")->text(), "2.5") << "what was typed stays";
  panel.call("apply");
  EXPECT_TRUE(panel.accepted());
  EXPECT_EQ(panel.bounds()[0].filter, std::optional(std::pair(1.0, 2.5)));
  EXPECT_FALSE(panel.bounds()[1].filter) << "an axis over its full range has none";
}

TEST_F(PlotPanels, PlotsShowWhatIsChosenAndSaveWhatIsShown) {
  ASSERT_TRUE(selection_);
  PPlots plots(desk_, selection_);
  const auto shows = [&](const char* callback, int columns) {
    auto* const shown = plots.gadget<QListWidget>("SlSelected");
    shown->clearSelection();
    for (int row = columns; row < shown->count(); ++row) shown->item(row)->setSelected(true);
    plots.call("left");
    plots.call(callback);
    plots.gadget<QListWidget>("SlAvailable")->selectAll();
    plots.call("right");
  };
  shows("scatter", 2);
  EXPECT_TRUE(opened<PScatter>());
  shows("scatter", 3);
  EXPECT_TRUE(opened<PPicture>());
  shows("cobwebs", 4);
  EXPECT_TRUE(opened<PCobwebs>());
  shows("histogram", 1);
  EXPECT_TRUE(opened<PSingleFactor>());
  shows("histogram", 2);
  EXPECT_TRUE(opened<PHistogram>());

  plots.gadget<QTabWidget>("NoPlots")->setCurrentIndex(2);
  auto* const kinds = plots.gadget<QComboBox>("OKind");
  auto* const correlations = plots.gadget<TableView>("MaCorrelations");
  EXPECT_EQ(correlations->tableModel().rowCount(), 3) << "those of the sample's factors";
  kinds->setCurrentIndex(2);
  plots.call("correlationKind");
  ASSERT_EQ(correlations->tableModel().rowCount(), 4);
  correlations->setCurrentIndex(correlations->tableModel().index(0, 3));
  dialogs_.files = {file("corr.txt")};
  plots.call("saveCorrTable");
  EXPECT_EQ(takeShown(), Texts{"Save table: save *.*"});
  const std::string saved = test::readFile(file("corr.txt"));
  EXPECT_TRUE(saved.starts_with(std::string(20, ' ') + "\t                  x1\t")) << saved;
  EXPECT_NE(saved.find("\n                   y\t"), std::string::npos) << saved;
}

TEST_F(PlotPanels, OneColumnEmptyRunsAndOldSelectionsAreNoCrash) {
  ASSERT_TRUE(selection_);
  RunTable odd;
  odd.runs = 3;
  const double none = std::numeric_limits<double>::quiet_NaN();
  odd.columns = {{"same", true, {2.0, 2.0, 2.0}},
                 {"none", false, {none, none, none}},
                 {"far", false, {std::numeric_limits<double>::infinity(), 1.0, 2.0}}};
  for (const std::int32_t runs : {3, 0}) {
    odd.runs = runs;
    for (RunColumn& column : odd.columns) column.values.resize(static_cast<std::size_t>(runs));
    const auto strange = std::make_shared<Selection>(std::make_shared<const RunTable>(odd), 0);
    for (std::size_t column = 0; column < 3; ++column) {
      PScatter scatter(desk_, strange, column, 1);
      PCobwebs cobwebs(desk_, strange, {column});
      PSingleFactor single(desk_, strange, column);
      for (Panel* const panel : std::initializer_list<Panel*>{&scatter, &cobwebs, &single}) {
        EXPECT_TRUE(panel->show());
        QApplication::processEvents();
      }
    }
    PPlots plots(desk_, strange);
    EXPECT_TRUE(plots.show());
    for (int page = 0; page < 3; ++page) plots.gadget<QTabWidget>("NoPlots")->setCurrentIndex(page);
  }
  EXPECT_TRUE(takeShown().empty());
}

}  // namespace
}  // namespace tarvex
