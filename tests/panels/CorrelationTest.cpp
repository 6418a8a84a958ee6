#include "panels/CorrelationFixture.h"
#include "support/Numbers.h"
#include "toolkit/ChartView.h"

namespace tarvex {
namespace {

using test::Texts;

using Correlation = test::CorrelationPanelTest;

TEST_F(Correlation, TheTreeIsMadeByDragsAndKeys) {
  const std::string cyclic = "Error:    Cyclic correlation not allowed";
  const std::string wrong =
      "Wrong value:   Correlation values must fall between -1\n  and 1 and can't be equal to 0\n\n";
  const std::string start = "0.00   x1 >0.50   x2 >>-0.25   x3 | x4", flat = "0.00   x1 >0.50   x2 >1.00   x3 | x4";
  enum { kInto, kOut, kFromList };
  // From where, which, on what; the value typed; what is told while it is held, what refuses it, and the tree then.
  const std::tuple<int, int, int, const char*, std::string, std::string, std::string> drags[] = {
      {kFromList, 0, -1, nullptr, "x1 as a root", "", "0.00   x1 | x2 x3 x4"},
      {kFromList, 1, 0, "0.5", "x2 below x1", "", "0.00   x1 >0.50   x2 | x3 x4"},
      {kFromList, 2, 1, "-0.25", "x3 below x2", "", start},
      {kInto, 0, 2, nullptr, "Cyclic correlation not allowed", cyclic, start},
      {kInto, 1, 1, nullptr, "x2 below x2", "", start},
      {kFromList, 3, 0, "0", "x4 below x1", wrong + "0 is no correlation. The key Delete takes one away.", start},
      {kFromList, 3, 0, "1.5", "x4 below x1", wrong + "1.5 lies outside of -1 to 1.", start},
      {kFromList, 3, 0, "abc", "x4 below x1", wrong + "'abc' is no number.", start},
      {kInto, 2, 0, "1", "x3 below x1", "", flat},
      {kOut, 0, -1, nullptr, "x1 out of the tree", "", "0.00   x2 0.00   x3 | x1 x4"},
  };
  open(normals(4));
  EXPECT_EQ(shownTree(), "| x1 x2 x3 x4");
  for (const auto& [way, id, on, value, held, refused, after] : drags) {
    Tree& from = way == kFromList ? list() : tree();
    EXPECT_EQ(drag(from, id, way == kOut ? list() : tree(), on, value), refused.empty() ? Texts() : Texts{refused});
    EXPECT_EQ(held_, held);
    EXPECT_EQ(shownTree(), after);
  }
  EXPECT_EQ(message(), "Links in the tree: 0.");
  for (int step = 0; step < 5; ++step) panel_->call("undo");  // what was refused is no step
  EXPECT_EQ(shownTree(), "| x1 x2 x3 x4");
  for (int step = 0; step < 4; ++step) panel_->call("redo");
  const auto press = [this](int factor, Qt::Key key, Qt::KeyboardModifiers modifiers) {
    tree().setCurrent(factor);
    tree().setFocus();
    QTest::keyClick(&tree(), key, modifiers);
    QCoreApplication::processEvents();
    return shownTree();
  };
  EXPECT_EQ(drag(list(), 3, tree(), 0, "0.25"), Texts());
  EXPECT_EQ(press(1, Qt::Key_Down, Qt::AltModifier), "0.00   x1 >1.00   x3 >0.50   x2 >0.25   x4 |");
  EXPECT_EQ(press(3, Qt::Key_Up, Qt::AltModifier), "0.00   x1 >1.00   x3 >0.25   x4 >0.50   x2 |");
  answerValue("0.125");
  EXPECT_EQ(press(2, Qt::Key_Return, {}), "0.00   x1 >0.13   x3 >0.25   x4 >0.50   x2 |");
  EXPECT_EQ(panel_->draft().node(2).correlation, 0.125);
  FactorList result = taken();
  EXPECT_EQ(result.correlationMode, kDependenceTree);
  EXPECT_EQ(result.node(0).children, (std::vector<std::int32_t>{2, 3, 1}));

  // Factors that were moved take their links along.
  std::string problem;
  result.arrange({3, 2, 1, 0});
  ASSERT_TRUE(result.renameFactor(1, "flow", problem));
  open(std::make_shared<FactorList>(std::move(result)));
  EXPECT_EQ(shownTree(), "0.00   x1 >0.13   flow >0.25   x4 >0.50   x2 |");
  panel_->call("cancel");
  EXPECT_FALSE(panel_->accepted());
}

TEST_F(Correlation, OkAsksBeforeTheMethodInForceIsGivenUp) {
  const std::string title = "Correlation method: ", buttons = " [^Yes/^No]";
  const Texts eliminate{title + "Do you want to eliminate correlations between factors?" + buttons};
  const Texts change{title +
                     "The correlation method is different from the one previuosly chosen,\n do you want to "
                     "switch to the new correlation method?" +
                     buttons};
  const std::tuple<CorrelationMode, CorrelationMode, Texts> rows[] = {
      {kNoCorrelation, kDependenceTree, {}},        {kImanConover, kImanConover, {}},
      {kNoCorrelation, kNoCorrelation, {}},         {kImanConover, kNoCorrelation, eliminate},
      {kDependenceTree, kNoCorrelation, eliminate}, {kDependenceTree, kImanConover, change},
      {kImanConover, kDependenceTree, change}};
  for (const auto& [opened, chosen, asked] : rows)
    for (const bool answer : {false, true}) {
      open(normals(2, opened));
      method(chosen);
      dialogs_.answers = {answer};
      EXPECT_EQ(ok(asked), asked.empty() || answer) << opened << chosen;
      EXPECT_EQ(panel_->modified(), opened != chosen);
    }
}

TEST_F(Correlation, SteinSamplesAreTakenOrNothingChanges) {
  const std::string chooser = "Open the list of factors file:: open *.*";
  open(normals(2));
  method(kSteinSample);
  EXPECT_FALSE(ok({"Error: The Stein correlation sample is empty.\nNo correlation can be calculated."}));
  EXPECT_EQ(message(), "The Stein correlation sample is empty. No correlation can be calculated.");
  panel_->call("undo");
  EXPECT_FALSE(window().isWindowModified() || in<QAction>("AUndo").isEnabled());
  test::writeFile(file("s.txt"), "1 3\na\nb\nc\n1 2 3\n");
  does("steinCorr", {chooser, "Error: Error loading stein file. The number of imported factors is..."}, {},
       {file("s.txt")});
  EXPECT_FALSE(panel_->modified());
  test::writeFile(file("s.txt"), "3 2\na\nb\n1 5\n2 7\n3 6\n");
  does("steinCorr", {chooser}, {}, {file("s.txt")});
  EXPECT_EQ(label("MlStein") + ": " + message(),
            "3 rows from s.txt: 3 rows of the Stein sample give the order of the sample.");
  EXPECT_EQ(cells(*table("MaSamples").model()), "1 5|2 7|3 6|");
  does("steinCorr", {":    Discard the old Stein configuration ? [^Yes/^No]"});
  does("plot");
  EXPECT_EQ(label("MlOutcome"), "Rank correlation asked for: 0.50. Of these 3 points: 0.50.");
  EXPECT_TRUE(ok());
}

TEST_F(Correlation, ThePreviewSaysWhatWasAskedAndWhatCameOut) {
  auto linked = normals(3, kDependenceTree);
  ASSERT_TRUE(linked->link(1, 0, 0.8) && linked->setMatrix(0, 1, 0.9F));
  const std::tuple<CorrelationMode, int, int, Texts, std::string> rows[] = {
      {kDependenceTree, 1, 0, {}, "0.80"},
      {kDependenceTree, 0, 2, {"Error: x1 and x3 are not linked to each other in the dependence tree."}, ""},
      {kDependenceTree, 1, 1, {"Error: Choose two factors."}, ""},
      {kImanConover, 0, 1, {}, "0.90"},
      {kNoCorrelation, 0, 2, {}, "0.00"}};
  open(linked);
  for (const auto& [mode, first, second, shown, asked] : rows) {
    method(mode);
    in<QComboBox>("OFirst").setCurrentIndex(first);
    in<QComboBox>("OSecond").setCurrentIndex(second);
    page(3);
    does("plot", shown);
    EXPECT_EQ(in<ChartView>("ScPoints").figure().charts.empty(), asked.empty());
    const QString said = in<QLabel>("MlOutcome").text();
    EXPECT_EQ(said.section(". ", 0, 0).toStdString(), asked.empty() ? "" : "Rank correlation asked for: " + asked);
    const double value = asked.empty() ? 0.0 : std::stod(asked);
    EXPECT_NEAR(said.section(' ', -1).chopped(1).toDouble(), value, test::rankTolerance(value, 250));
  }
  method(kImanConover);
  cell(0, 2, "0.9");
  cell(1, 2, "-0.9");
  does("plot",
       {"Error: The Iman Conover Matrix is not positive definited.\nCorrelation's values cannot be calculated."});
}

TEST_F(Correlation, ADemonstrationIsForReading) {
  auto shown = normals(2, kDependenceTree);
  ASSERT_TRUE(shown->link(1, 0, 0.5));
  open(shown, true);
  EXPECT_EQ(window().windowTitle(), "Correlate factors[*]");
  EXPECT_EQ(drag(tree(), 1, list(), -1), Texts{"not accepted"});
  tree().setCurrent(1);
  QTest::keyClick(&tree(), Qt::Key_Return);
  QTest::keyClick(&tree(), Qt::Key_Left, Qt::AltModifier);
  cell(0, 1, "0.5");
  paste(matrix(), 0, 1, "0.5");
  for (const char* const gadget : {"SeCorrType", "BStein", "BNearest"}) EXPECT_FALSE(enabled(gadget)) << gadget;
  QCoreApplication::processEvents();
  takeShown();
  EXPECT_FALSE(ok());
  EXPECT_FALSE(panel_->modified() || panel_->isVisible());
}

}  // namespace
}  // namespace tarvex
