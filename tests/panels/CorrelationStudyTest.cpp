#include <QComboBox>
#include <algorithm>
#include <filesystem>

#include "factors/FactorFiles.h"
#include "panels/CorrelationFixture.h"
#include "panels/prep/PInputFactors.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/SampleFiles.h"
#include "support/Golden.h"

namespace tarvex {
namespace {

// By keys over the real panels, from a list without correlation to a file and a sample as they were.
class CorrelationStudy : public test::CorrelationPanelTest {
 protected:
  // The files that the panels make of golden factors when `keys` go to the panel of correlations.
  void study(const char* golden, MethodId method, int runs, int seed, const char* sample,
             std::function<void(QWidget&)> keys) {
    auto bare = std::make_shared<FactorList>();
    std::string problem;
    ASSERT_TRUE(loadFactorFile(test::goldenPath(golden), *bare, problem)) << problem;
    auto factors = std::make_shared<FactorList>();
    for (int i = 0; i < bare->factorCount(); ++i) factors->addFactor(bare->factor(i).clone());
    PInputFactors panel(display_, factors, false, nullptr);
    panel.window()->show();
    whenShown("Correlation", std::move(keys));
    click(*panel.window(), "BCorrelate");
    dialogs_.files = {file(golden)};
    panel.call("save");
    EXPECT_EQ(test::readFile(file(golden)), test::readFile(test::goldenPath(golden)));
    PrepConfiguration prep;
    ASSERT_TRUE(loadFactorFile(file(golden), prep.factors, problem)) << problem;
    prep.sampler = makeSampler(method);
    ASSERT_TRUE(prep.sampler->setSamples(runs) && prep.sampler->setSeed(seed) && prep.prepareGeneration());
    ASSERT_EQ(prep.generate(100), 100) << prep.errorText();
    ASSERT_TRUE(writeSampleFile(file(sample), prep, problem)) << problem;
    EXPECT_TRUE(test::compareGolden(sample, test::readFile(file(sample))));
  }
  static void chooseMethod(QWidget& window, Qt::Key key) {
    QTest::keyClick(window.findChild<QComboBox*>("SeCorrType"), key);
  }
};

TEST_F(CorrelationStudy, Matrix) {
  study("matrix.fac", kRandom, 150, 5648423, "random-matrix.sam", [](QWidget& window) {
    auto* const view = window.findChild<TableView*>("MaCorrelations");
    typeCell(*view, 0, 1, "0.7");
    typeCell(*view, 2, 0, "-0.4");
    typeCell(*view, 1, 3, "0.3");
    typeCell(*view, 2, 3, ".2");
    press(window, Qt::Key_O);
  });
}

TEST_F(CorrelationStudy, Tree) {
  study("tree.fac", kRandom, 120, 31, "random-tree.sam", [this](QWidget& window) {
    chooseMethod(window, Qt::Key_Home);
    auto* const outside = window.findChild<Tree*>("SlFactors");
    auto* const tree = window.findChild<Tree*>("TrCorrelation");
    const auto link = [&](Qt::Key factor, Qt::Key parent, const char* value) {
      tree->setFocus();
      QTest::keyClick(tree, parent);
      outside->setFocus();
      QTest::keyClick(outside, factor);
      if (value != nullptr) answerValue(value);
      QTest::keyClick(outside, Qt::Key_Return);
    };
    // child, root, grandchild, other, against
    QTest::keyClick(outside, Qt::Key_Home);
    link(Qt::Key_Down, Qt::Key_Home, nullptr);
    link(Qt::Key_Home, Qt::Key_Home, "0.8");
    link(Qt::Key_Home, Qt::Key_End, "0.6");
    link(Qt::Key_End, Qt::Key_Home, "-0.7");
    press(window, Qt::Key_O);
  });
}

TEST_F(CorrelationStudy, Stein) {
  const std::vector<std::string> lines = test::splitLines(test::readFile(test::goldenPath("stein.fac")));
  const auto block = std::ranges::find(lines, "Stein Information:") + 5;
  std::string text = "60 5\na\nk\nb\nc\nr\n";
  for (int row = 0; row < 60; ++row) text += block[row] + '\n';
  test::writeFile(file("stein.txt"), text);
  const test::ScopedCurrentDirectory stay;
  std::filesystem::current_path(directory_.path());
  dialogs_.files = {"stein.txt"};
  study("stein.fac", kLatin, 48, 8, "latin-stein.sam", [](QWidget& window) {
    chooseMethod(window, Qt::Key_End);
    press(window, Qt::Key_I);
    press(window, Qt::Key_O);
  });
}

}  // namespace
}  // namespace tarvex
