#include "factors/FactorFiles.h"
#include "panels/PrepFixture.h"
#include "panels/sampling/makeMethodPanel.h"
#include "sampling/FixedSampler.h"
#include "support/Golden.h"

namespace tarvex {
namespace {

using test::Texts;

class FixedPanel : public test::PrepTest {
 protected:
  FixedPanel() {
    std::string message;
    EXPECT_TRUE(loadFactorFile(test::goldenPath("mixed.fac"), list_, message)) << message;
  }
  void open(const Sampler* current = nullptr) {
    panel_ = makeMethodPanel(display_, kFixed, {&list_, current, false}, nullptr);
    ASSERT_TRUE(panel_);
    view_ = panel_->gadget<TableView>("MaSamples");
  }
  std::string rows() { return cells(*view_->model()); }
  std::string label(const char* name) { return PrepTest::label(*panel_, name); }
  std::string shownCell(int row, int column) {
    view_->selectionModel()->setCurrentIndex(view_->model()->index(row, column), QItemSelectionModel::ClearAndSelect);
    std::string text = label("MlFactorType");
    for (const char* const name : {"NValue", "NDensity", "NProbability"})
      text += ' ' + panel_->gadget<QLineEdit>(name)->text().toStdString();
    return text;
  }
  void select(int row) {
    view_->selectionModel()->setCurrentIndex(view_->model()->index(row, 0),
                                             QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
  }

  FactorList list_;
  std::unique_ptr<PMethod> panel_;
  TableView* view_ = nullptr;
};

TEST_F(FixedPanel, BeginsInTheMiddleAndTellsOfEachCell) {
  open();
  EXPECT_EQ(rows().substr(0, 10), "0.5 0.5 2 ");
  EXPECT_EQ(shownCell(0, 0), "Uniform 0.5 1 0.5");
  EXPECT_EQ(shownCell(0, 1), "Constant 0.5  ");
  EXPECT_EQ(shownCell(0, 2), "Normal 2 0.797885 0.5");
  EXPECT_EQ(shownCell(0, 3), "Relation 1.16667  ");  // 0.5 + 0.5 * 4 / 3, from the means
  view_->clearSelection();
  panel_->call("scrollTitle");
  EXPECT_EQ(label("MlFactorType") + panel_->gadget<QLineEdit>("NValue")->text().toStdString(), "");
  EXPECT_EQ(label("MlCost").substr(0, 6), "1 run:");
  std::string message;
  FactorList flat;
  flat.addFactor(makeFactorOf("Normal", {0.0, 0.0}));
  EXPECT_EQ(makeMethodPanel(display_, kFixed, {&flat, nullptr, false}, nullptr), nullptr);
  EXPECT_EQ(takeShown(), Texts{"Error: I cannot calculate the inverse cumulative of factor 1"});
}

TEST_F(FixedPanel, RowsAreAddedRemovedTypedAndPastedAsDrafts) {
  open();
  const std::string wrong = "Row 2, x1: '1,5' is no number.";
  paste(*view_, 0, 0, "1\t2\t3\t4\t5\t6\t7\t8\r\n1,5\t2\t3\t4\t5\t6\t7\tabc\r\n");
  EXPECT_EQ(rows(), "1 2 3 4 5 6 7 8|1,5 2 3 4 5 6 7 abc|");
  EXPECT_EQ(label("MlMessage"), wrong);
  step(*panel_, "ok", {"Error: wrong values: " + wrong});
  step(*panel_, "save", {"Error: " + wrong});
  paste(*view_, 1, 6, "7\t8\t9");
  EXPECT_EQ(takeShown(), Texts{"Error: There are columns for 2 values, not for 3."});
  paste(*view_, 0, 0, "x5\tx1\n80\t10\n81\t11\n82\t12\n");  // by name, and a row more than there is
  EXPECT_EQ(rows().substr(0, 53), "10 2 3 4 5 6 7 80|11 2 3 4 5 6 7 81|12 0.5 2 1.166665");
  view_->model()->setData(view_->model()->index(0, 0), "1e-3");
  select(2);
  panel_->call("remove");
  panel_->call("add");
  EXPECT_EQ(view_->model()->rowCount(), 3);
  view_->clearSelection();
  step(*panel_, "remove", {"Error: No row selected"});
  select(2);
  panel_->call("remove");
  panel_->call("ok");
  const std::unique_ptr<Sampler> made = panel_->takeSampler();
  ASSERT_TRUE(made);
  EXPECT_EQ(made->numSamples, 2);
  EXPECT_EQ(dynamic_cast<FixedSampler&>(*made).copyRow(0), (std::vector<double>{0.001, 2, 3, 4, 5, 6, 7, 80}));
  open(made.get());
  EXPECT_EQ(rows(), "0.001 2 3 4 5 6 7 80|11 2 3 4 5 6 7 81|");
  view_->selectAll();
  panel_->call("remove");
  EXPECT_EQ(label("MlMessage"), "No samples to generate");
  panel_->call("ok");
  EXPECT_EQ(panel_->takeSampler()->numSamples, 0);
}

TEST_F(FixedPanel, FilesComeAndGoAndDamagedOnesChangeNothing) {
  open();
  const std::string before = rows();
  test::writeFile(file("short.csv"), "x1,k1\n1,2\n");
  test::writeFile(file("word.csv"), "x1,k1,x2,r1,x3,k2,x4,x5\n1,2,3,4,5,6,7,8\n1,2,3,4,5,6,7,eight\n");
  const std::string chooser = "Load the runs of a sample: open *.csv *.*";
  const std::string failed = "Error: Error reading samples file\n";
  const std::pair<const char*, const char*> damaged[] = {{"none.csv", "..."},
                                                         {"short.csv", ":1: the column of the factor 'x2'..."},
                                                         {"word.csv", ":3: 'eight' is not a number...."}};
  for (const auto& [name, said] : damaged) {
    step(*panel_, "load", {chooser, failed + file(name) + said}, {}, {file(name)});
    EXPECT_EQ(rows(), before);
  }
  dialogs_.files = {test::goldenPath("rows.csv"), file("out.csv"), directory_.path()};
  panel_->call("load");
  panel_->call("save");
  takeShown();
  std::string expected = test::readFile(test::goldenPath("rows.csv"));
  expected.replace(expected.find("1e-3"), 4, "0.001");
  EXPECT_EQ(test::readFile(file("out.csv")), expected);
  EXPECT_EQ(shownBy(*panel_, "save").size(), 2U) << "a directory can't be written";
}

}  // namespace
}  // namespace tarvex
