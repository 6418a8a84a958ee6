#include <QAction>

#include "panels/CorrelationFixture.h"
#include "support/Numbers.h"
#include "toolkit/ChartView.h"

namespace tarvex {
namespace {

using test::Texts;

using Correlation = test::CorrelationPanelTest;

constexpr const char* kEmptyStein = "Error: The Stein correlation sample is empty.\nNo correlation can be calculated.";
constexpr const char* kSwitch =
    "Correlation method: The correlation method is different from the one previuosly chosen,\n do you want to switch "
    "to the new correlation method? [^Yes/^No]";

TEST_F(Correlation, TheTreeIsMadeByDragsAndKeys) {
  const std::string cyclic = "Error:    Cyclic correlation not allowed";
  const auto refused = [](const char* why) {
    return std::string("Wrong value:   Correlation values must fall between -1\n  and 1 and can't be equal to 0\n\n") +
           why;
  };
  open(normals(4));
  EXPECT_EQ(shownTree(), "| x1 x2 x3 x4");
  const std::string start = "0.00   x1 >0.50   x2 >>-0.25   x3 | x4";
  EXPECT_EQ(drag(list(), 0, tree(), -1), Texts());
  EXPECT_EQ(held_, "x1 as a root");
  EXPECT_EQ(drag(list(), 1, tree(), 0, "0.5"), Texts());
  EXPECT_EQ(held_, "x2 below x1");
  EXPECT_EQ(drag(list(), 2, tree(), 1, "-0.25"), Texts());
  EXPECT_EQ(shownTree(), start);
  EXPECT_EQ(drag(tree(), 0, tree(), 2), Texts{cyclic});
  EXPECT_EQ(held_, "Cyclic correlation not allowed");
  EXPECT_EQ(drag(tree(), 1, tree(), 1), Texts());
  EXPECT_EQ(drag(list(), 3, tree(), 0, "0"), Texts{refused("0 is no correlation. The key Delete takes one away.")});
  EXPECT_EQ(drag(list(), 3, tree(), 0, "1.5"), Texts{refused("1.5 lies outside of -1 to 1.")});
  EXPECT_EQ(drag(list(), 3, tree(), 0, "abc"), Texts{refused("'abc' is no number.")});
  EXPECT_EQ(shownTree(), start);
  EXPECT_EQ(panel_->undo().undoName(), "Link x3 to x2");
  drag(tree(), 2, tree(), 0, "1");
  EXPECT_EQ(shownTree(), "0.00   x1 >0.50   x2 >1.00   x3 | x4");
  tree().setCurrent(2);
  QTest::keyClick(&tree(), Qt::Key_Up, Qt::AltModifier);
  QCoreApplication::processEvents();
  EXPECT_EQ(shownTree(), "0.00   x1 >1.00   x3 >0.50   x2 | x4");
  tree().setFocus();
  answerValue("0.125");
  QTest::keyClick(&tree(), Qt::Key_Return);
  EXPECT_EQ(panel_->draft().node(2).correlation, 0.125);
  drag(tree(), 0, list(), -1);
  EXPECT_EQ(shownTree(), "0.00   x2 0.00   x3 | x1 x4");
  EXPECT_EQ(label("MlMessage"), "Links in the tree: 0.");
  for (int i = 0; i < 2; ++i) panel_->call("undo");
  EXPECT_EQ(shownTree(), "0.00   x1 >1.00   x3 >0.50   x2 | x4");
  FactorList result;
  std::string problem;
  takeInto(result);
  EXPECT_EQ(result.correlationMode, kDependenceTree);
  EXPECT_EQ(result.node(0).children, (std::vector<std::int32_t>{2, 1}));

  // Factors that were moved take their links along.
  result.arrange({3, 2, 1, 0});
  ASSERT_TRUE(result.renameFactor(1, "flow", problem));
  auto moved = std::make_shared<FactorList>(std::move(result));
  open(moved);
  EXPECT_EQ(shownTree(), "0.00   x1 >1.00   flow >0.50   x2 | x4");
  panel_->call("cancel");
  EXPECT_FALSE(panel_->accepted());
}

TEST_F(Correlation, OkAsksBeforeTheMethodInForceIsGivenUp) {
  const std::string eliminate = "Correlation method: Do you want to eliminate correlations between factors? [^Yes/^No]";
  const struct {
    CorrelationMode opened, chosen;
    std::string asked;
  } rows[] = {{kNoCorrelation, kDependenceTree, ""},        {kImanConover, kImanConover, ""},
              {kNoCorrelation, kNoCorrelation, ""},         {kImanConover, kNoCorrelation, eliminate},
              {kDependenceTree, kNoCorrelation, eliminate}, {kDependenceTree, kImanConover, kSwitch},
              {kImanConover, kDependenceTree, kSwitch}};
  for (const auto& row : rows)
    for (const bool answer : {false, true}) {
      open(normals(2, row.opened));
      method(row.chosen);
      dialogs_.answers = {answer};
      const auto [shown, accepted] = ok();
      EXPECT_EQ(shown, row.asked.empty() ? Texts() : Texts{row.asked}) << row.opened << row.chosen;
      EXPECT_EQ(accepted, row.asked.empty() || answer) << row.opened << row.chosen;
      EXPECT_EQ(panel_->modified(), row.opened != row.chosen);
    }
}

TEST_F(Correlation, SteinSamplesAreTakenOrNothingChanges) {
  const std::string chooser = "Open the list of factors file:: open *.*";
  const std::string inconsistent = "Error: Error loading stein file. Current data may be inconsistent or corrupt.";
  const struct {
    const char* text;
    std::string shown;
  } bad[] = {{nullptr, "Error: Error loading stein file. No factors to import."},
             {"1 3\na\nb\nc\n1 2 3\n", "Error: Error loading stein file. The number of imported factors is different"},
             {"2 2\na\nb\n1 2\n3 0,5\n", inconsistent}};
  open(normals(2));
  method(kSteinSample);
  EXPECT_EQ(ok(), std::pair(Texts{kEmptyStein}, false));
  EXPECT_EQ(label("MlMessage"), "The Stein correlation sample is empty. No correlation can be calculated.");
  panel_->call("undo");
  EXPECT_FALSE(panel_->window()->isWindowModified() || panel_->gadget<QAction>("AUndo")->isEnabled());
  for (const auto& row : bad) {
    if (row.text != nullptr) test::writeFile(file("s.txt"), row.text);
    step(*panel_, "steinCorr", {chooser, row.shown + "..."}, {}, {file("s.txt")});
    EXPECT_FALSE(panel_->modified());
  }
  test::writeFile(file("s.txt"), "3 2\na\nb\n1 5\n2 7\n3 6\n");
  step(*panel_, "steinCorr", {chooser}, {}, {file("s.txt")});
  EXPECT_EQ(label("MlStein") + ": " + label("MlMessage"),
            "3 rows from s.txt: 3 rows of the Stein sample give the order of the sample.");
  EXPECT_EQ(panel_->gadget<TableView>("MaSamples")->tableModel().source()->text(1, 1), "7");
  step(*panel_, "steinCorr", {":    Discard the old Stein configuration ? [^Yes/^No]"});
  panel_->call("plot");
  EXPECT_EQ(label("MlOutcome"), "Rank correlation asked for: 0.50. Of these 3 points: 0.50.");
  EXPECT_TRUE(ok().second);
}

TEST_F(Correlation, ThePreviewSaysWhatWasAskedAndWhatCameOut) {
  auto linked = normals(3, kDependenceTree);
  ASSERT_TRUE(linked->link(1, 0, 0.8) && linked->setMatrix(0, 1, 0.9F));
  const struct {
    CorrelationMode mode;
    int first, second;
    Texts shown;
    std::string asked;
  } rows[] = {{kDependenceTree, 1, 0, {}, "0.80"},
              {kDependenceTree, 0, 2, {"Error: x1 and x3 are not linked to each other in the dependence tree."}, ""},
              {kDependenceTree, 1, 1, {"Error: Choose two factors."}, ""},
              {kImanConover, 0, 1, {}, "0.90"},
              {kNoCorrelation, 0, 2, {}, "0.00"}};
  open(linked);
  for (const auto& row : rows) {
    method(row.mode);
    panel_->gadget<QComboBox>("OFirst")->setCurrentIndex(row.first);
    panel_->gadget<QComboBox>("OSecond")->setCurrentIndex(row.second);
    panel_->gadget<QTabWidget>("NoCorrelation")->setCurrentIndex(3);
    step(*panel_, "plot", row.shown);
    EXPECT_EQ(panel_->gadget<ChartView>("ScPoints")->figure().charts.empty(), row.asked.empty());
    const QString said = panel_->gadget<QLabel>("MlOutcome")->text();
    EXPECT_EQ(said.section(". ", 0, 0).toStdString(),
              row.asked.empty() ? "" : "Rank correlation asked for: " + row.asked);
    if (row.asked.empty()) continue;
    EXPECT_NEAR(said.section(' ', -1).chopped(1).toDouble(), std::stod(row.asked),
                test::rankTolerance(std::stod(row.asked), 250))
        << said.toStdString();
  }
  method(kImanConover);
  cell(0, 2, "0.9");
  cell(1, 2, "-0.9");
  step(*panel_, "plot",
       {"Error: The Iman Conover Matrix is not positive definited.\nCorrelation's values cannot be calculated."});
}

TEST_F(Correlation, ADemonstrationIsForReading) {
  auto shown = normals(2, kDependenceTree);
  ASSERT_TRUE(shown->link(1, 0, 0.5));
  open(shown, true);
  EXPECT_EQ(panel_->window()->windowTitle(), "Correlate factors[*]");
  EXPECT_EQ(drag(tree(), 1, list(), -1), Texts{"not accepted"});
  tree().setCurrent(1);
  QTest::keyClick(&tree(), Qt::Key_Return);
  QTest::keyClick(&tree(), Qt::Key_Left, Qt::AltModifier);
  EXPECT_FALSE(matrix().model()->setData(matrix().model()->index(0, 1), "0.5"));
  paste(matrix(), 0, 1, "0.5");
  for (const char* const gadget : {"SeCorrType", "BStein", "BNearest"})
    EXPECT_FALSE(panel_->gadget<QWidget>(gadget)->isEnabled()) << gadget;
  QCoreApplication::processEvents();
  takeShown();
  EXPECT_EQ(ok(), std::pair(Texts(), false));
  EXPECT_FALSE(panel_->modified() || panel_->isVisible());
}

}  // namespace
}  // namespace tarvex
