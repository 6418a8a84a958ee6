#include "panels/PrepFixture.h"
#include "panels/sampling/makeMethodPanel.h"
#include "sampling/FixedSampler.h"

namespace tarvex {
namespace {

using test::Texts;

class FixedPanel : public test::PrepPanelTest<PMethod> {
 protected:
  void open(const Sampler* current = nullptr) {
    show(makeMethodPanel(display_, kFixed, {list_.get(), current, false}, nullptr));
    view_ = &table("MaSamples");
  }
  std::string rows() { return cells(*view_->model()); }
  void select(int row, int column, QItemSelectionModel::SelectionFlags also = {}) {
    const QModelIndex cell = view_->model()->index(row, column);
    view_->selectionModel()->setCurrentIndex(cell, QItemSelectionModel::ClearAndSelect | also);
  }
  std::unique_ptr<Sampler> taken() {
    does("ok");
    return panel_->takeSampler();
  }

  const std::shared_ptr<FactorList> list_ = golden("mixed.fac");
  TableView* view_ = nullptr;
};

TEST_F(FixedPanel, BeginsInTheMiddleAndTellsOfEachCell) {
  const auto said = [this] {
    return label("MlFactorType") + ' ' + field("NValue") + ' ' + field("NDensity") + ' ' + field("NProbability");
  };
  open();
  EXPECT_EQ(rows().substr(0, 10), "0.5 0.5 2 ");
  const char* const told[] = {"Uniform 0.5 1 0.5", "Constant 0.5  ", "Normal 2 0.797885 0.5",
                              "Relation 1.16667  "};  // 0.5 + 0.5 * 4 / 3, from the means
  for (int column = 0; column < 4; ++column) {
    select(0, column);
    EXPECT_EQ(said(), told[column]);
  }
  view_->clearSelection();
  does("scrollTitle");
  EXPECT_EQ(said(), "   ");
  EXPECT_EQ(label("MlCost").substr(0, 6), "1 run:");
  FactorList flat;
  flat.addFactor(makeFactorOf("Normal", {0.0, 0.0}));
  EXPECT_EQ(makeMethodPanel(display_, kFixed, {&flat, nullptr, false}, nullptr), nullptr);
  EXPECT_EQ(takeShown(), Texts{"Error: I cannot calculate the inverse cumulative of factor 1"});
}

TEST_F(FixedPanel, RowsAreAddedRemovedTypedAndPastedAsDrafts) {
  const std::string wrong = "Row 2, x1: '1,5' is no number.";
  open();
  paste(*view_, 0, 0, "1\t2\t3\t4\t5\t6\t7\t8\r\n1,5\t2\t3\t4\t5\t6\t7\tabc\r\n");
  EXPECT_EQ(message(), wrong);
  does("ok", {"Error: wrong values: " + wrong});
  does("save", {"Error: " + wrong});
  paste(*view_, 1, 6, "7\t8\t9");
  EXPECT_EQ(takeShown(), Texts{"Error: There are columns for 2 values, not for 3."});
  EXPECT_EQ(rows(), "1 2 3 4 5 6 7 8|1,5 2 3 4 5 6 7 abc|");
  paste(*view_, 0, 0, "x5\tx1\n80\t10\n81\t11\n82\t12\n");  // by name, and a row more than there is
  EXPECT_EQ(rows().substr(0, 53), "10 2 3 4 5 6 7 80|11 2 3 4 5 6 7 81|12 0.5 2 1.166665");
  view_->model()->setData(view_->model()->index(0, 0), "1e-3");
  select(2, 0, QItemSelectionModel::Rows);
  does("remove");
  does("add");
  EXPECT_EQ(view_->model()->rowCount(), 3);
  view_->clearSelection();
  does("remove", {"Error: No row selected"});
  select(2, 0, QItemSelectionModel::Rows);
  does("remove");
  const std::unique_ptr<Sampler> made = taken();
  EXPECT_EQ(dynamic_cast<FixedSampler&>(*made).copyRow(0), (std::vector<double>{0.001, 2, 3, 4, 5, 6, 7, 80}));
  open(made.get());
  EXPECT_EQ(rows(), "0.001 2 3 4 5 6 7 80|11 2 3 4 5 6 7 81|");
  view_->selectAll();
  does("remove");
  EXPECT_EQ(message(), "No samples to generate");
  EXPECT_EQ(taken()->numSamples, 0);
}

TEST_F(FixedPanel, FilesComeAndGoAndDamagedOnesChangeNothing) {
  const std::string loads = "Load the runs of a sample: open *.csv *.*";
  const std::string saves = "Save the runs of the sample: save *.csv *.*";
  const std::string failed = "Error: Error reading samples file\n";
  test::writeFile(file("short.csv"), "x1,k1\n1,2\n");
  test::writeFile(file("word.csv"), "x1,k1,x2,r1,x3,k2,x4,x5\n1,2,3,4,5,6,7,8\n1,2,3,4,5,6,7,eight\n");
  open();
  const std::string before = rows();
  const std::pair<const char*, const char*> damaged[] = {{"none.csv", "..."},
                                                         {"short.csv", ":1: the column of the factor 'x2'..."},
                                                         {"word.csv", ":3: 'eight' is not a number...."}};
  for (const auto& [name, said] : damaged) {
    does("load", {loads, failed + file(name) + said}, {}, {file(name)});
    EXPECT_EQ(rows(), before);
  }
  does("load", {loads}, {}, {test::goldenPath("rows.csv")});
  does("save", {saves}, {}, {file("out.csv")});
  std::string expected = test::readFile(test::goldenPath("rows.csv"));
  expected.replace(expected.find("1e-3"), 4, "0.001");
  EXPECT_EQ(test::readFile(file("out.csv")), expected);
  does("save", {saves, "Error: I cannot save the file\n..."}, {}, {directory_.path()});
}

}  // namespace
}  // namespace tarvex
