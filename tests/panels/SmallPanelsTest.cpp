#include "panels/MainPanelFixture.h"
#include "panels/main/PExternalModel.h"
#include "panels/main/PGenerate.h"
#include "panels/main/PLinkFactors.h"
#include "panels/main/PLogFile.h"
#include "toolkit/TableView.h"

namespace tarvex {
namespace {

using Texts = std::vector<std::string>;

class SmallPanels : public test::MainPanelTest {};

TEST_F(SmallPanels, LinkMovesInputsAndCancelLeavesThem) {
  FactorList factors;
  InternalModel model;
  std::string message;
  ASSERT_TRUE(loadModelFile(test::goldenPath("ishigami.imd"), model, message)) << message;
  choose("oldGeneration", test::goldenPath("ishigami.sam"));
  takeShown();
  PLinkFactors link(display_, controller().project().prep.factors, model, nullptr);
  auto* const table = link.gadget<TableView>("MaLinks");
  const auto inputs = [&] {
    std::string names;
    for (int row = 0; row < table->tableModel().rowCount(); ++row)
      names += table->tableModel().index(row, 1).data().toString().toStdString() + ' ';
    return names;
  };
  EXPECT_EQ(inputs(), "x1 x2 x3 ");
  link.call("scrollUp");
  EXPECT_EQ(takeShown(), Texts{"Error: No model factor selected"});
  table->selectRow(0);
  link.call("scrollUp");
  EXPECT_EQ(inputs(), "x1 x2 x3 ");
  link.call("scrollDown");
  link.call("scrollDown");
  link.call("scrollDown");
  EXPECT_EQ(inputs(), "x2 x3 x1 ");
  EXPECT_EQ(link.model().variables()[2].name, "x1");
  table->setCurrentIndex(table->tableModel().index(2, 1));
  QTest::keyClick(table, Qt::Key_Up, Qt::AltModifier);  // as a drag does
  EXPECT_EQ(inputs(), "x2 x1 x3 ");
  EXPECT_EQ(link.gadget<QLabel>("MlWarning")->text(), "Inputs beside a factor of another name: x2, x1.");
  link.call("pairNames");
  EXPECT_EQ(inputs(), "x1 x2 x3 ");
  link.call("cancel");
  EXPECT_FALSE(link.accepted());
}

TEST_F(SmallPanels, TheLogShowsWhatAModelPrinted) {
  test::writeFile(file("a.log"), "first\n" + std::string(5000, 'x') + "\n");
  PLogFile log(display_, nullptr);
  EXPECT_EQ(log.gadget<QLabel>("MFileName")->text(), "No file selected");
  dialogs_.files = {file("none.log"), file("a.log")};
  log.call("fileOpen");
  EXPECT_EQ(log.gadget<QLabel>("MFileName")->text(), "No file selected");
  const Texts shown = takeShown();
  ASSERT_EQ(shown.size(), 2U);
  EXPECT_EQ(shown[0], "Open log file: open *");
  EXPECT_EQ(shown[1].rfind("Error: Error opening file\n", 0), 0U);
  log.call("fileOpen");
  EXPECT_EQ(log.gadget<QLabel>("MFileName")->text().toStdString(), file("a.log"));
  EXPECT_EQ(log.gadget<QPlainTextEdit>("TeText")->toPlainText().size(), 6 + 5000 + 1);
}

TEST_F(SmallPanels, ProgressCountsFromZeroToAHundredAndTheAnimationGoesRound) {
  PGenerate progress(display_, "generation", "Sample generation", 1000, nullptr);
  for (const auto& [value, shown] :
       {std::pair{0.0, "0%"}, {57.9, "57%"}, {100.0, "100%"}, {-1.0, "100%"}, {101.0, "100%"}}) {
    progress.setPercentage(value);
    EXPECT_EQ(progress.gadget<QLabel>("MlPercentage")->text(), shown) << value;
  }
  PExternalModel run(display_, "External model execution", "model", "file", nullptr);
  const auto key = [&] { return run.gadget<QLabel>("icon1")->pixmap().cacheKey(); };
  std::vector<qint64> keys;
  for (int i = 0; i < 30; ++i) {
    keys.push_back(key());
    run.step();
  }
  EXPECT_EQ(keys[0], keys[15]);  // after fourteen frames one step shows the first again, as the counter starts anew
  EXPECT_NE(keys[0], keys[1]);
  run.call("stop");
  EXPECT_EQ(run.continueRun, 0);
}

}  // namespace
}  // namespace tarvex
