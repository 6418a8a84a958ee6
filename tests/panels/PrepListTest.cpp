#include <QHeaderView>
#include <QMenuBar>

#include "panels/PrepFixture.h"
#include "panels/prep/FactorEditing.h"
#include "panels/prep/PGraphics.h"
#include "panels/prep/PInputFactors.h"
#include "panels/prep/PVisInputFactors.h"
#include "toolkit/ChartView.h"
#include "toolkit/menuItem.h"

namespace tarvex {
namespace {

using test::Texts;

constexpr const char* kSteinAsked =
    "Warning: You are trying to modify the list of factors. This will discard the current Stein configuration "
    "[^Yes/^No]";
constexpr const char* kDeleteAsked = "Delete: Really delete this factor? [^Yes/^No]";
constexpr const char* kNoneSelected = "Error:    No factor selected";
constexpr const char* kSaveChooser = "Save current list of factors: save *.fac *.*";

class PrepList : public test::PrepPanelTest<PInputFactors> {
 protected:
  void open(std::shared_ptr<const FactorList> list, bool demo = false) {
    show(std::make_unique<PInputFactors>(display_, std::move(list), demo, nullptr));
  }
  TableView& grid() { return table("MaFactors"); }
  void select(int row) {
    grid().clearSelection();
    if (row >= 0) grid().selectRow(row);
  }
  void also(int row, QItemSelectionModel::SelectionFlag how = QItemSelectionModel::Select) {
    grid().selectionModel()->select(grid().model()->index(row, 0), how | QItemSelectionModel::Rows);
  }
  bool setCell(int row, int column, const char* text) {
    return grid().model()->setData(grid().model()->index(row, column), text);
  }
  const FactorList& factors() const { return panel_->editing().list(); }
  std::string list() const { return described(factors()); }
  // The gadgets that can't be used, buttons and menu items.
  std::string insensitive() {
    std::string names;
    for (const char* const name : {"BAdd", "BDelete", "BModify", "BVisualize", "BSave", "BCorrelate", "ADelete",
                                   "AModify", "AVisualize", "ASave", "ACorrelate"})
      if (!panel_->gadget<QObject>(name)->property("enabled").toBool()) names += std::string(name) + ' ';
    return names;
  }
};

TEST_F(PrepList, CellsAndPastedRowsAreTakenOrRefusedAsAWhole) {
  auto start = normals(3);
  std::string problem;
  start->addFactor(readFactorFields("Relation", "x1 + x2", nullptr, problem));
  start->factor(3).name = "y";
  open(start);
  select(0);
  EXPECT_TRUE(setCell(0, 0, " flow "));
  EXPECT_FALSE(setCell(0, 0, "x2"));
  EXPECT_EQ(message(), "The name of this factor is already in use");
  EXPECT_FALSE(setCell(1, 1, "cauchy"));
  EXPECT_EQ(message(), "'cauchy' is no distribution");
  const std::string before =
      "flow Normal 0, 1, 0.001, 0.999 | x2 Normal 0, 1, 0.001, 0.999 | x3 Normal 0, 1, 0.001, 0.999 | "
      "y Relation flow + x2";
  EXPECT_EQ(list(), before);
  grid().selectAll();
  also(3, QItemSelectionModel::Deselect);
  EXPECT_TRUE(setCell(1, 2, "5 2"));
  EXPECT_EQ(list(), QString::fromStdString(before).replace(" 0, 1,", " 5, 2,").toStdString());
  does("undo");
  whenShown("Normal Distribution", [](QWidget& panel) { use(panel, {{"NMean", "7"}, {"BOk", ""}}); });
  select(1);
  does("modify");
  EXPECT_EQ(factorFields(factors().factor(1)), "7, 1, 0.001, 0.999");
  does("undo");

  // Where a block is pasted, and how the reason begins.
  const std::tuple<int, const char*, std::string> refused[] = {
      {0, "a\tUniform\t0\t1\nb\tNormal\t1,5\t2", "Row 2: '1,5' is no number: decimals stand behind a point"},
      {0, "a\tUniform\t0\t1\na\tNormal\t1\t2", "Row 2: another row has the name a"},
      {0, "Dear all,\nplease find below\n\tour factors", "Row 1: the factor name"},
      {0, "a\tNormal\t\t2", "Row 1: a cell between the parameters is empty"},
      {1, "Normal\t1\t2\nGauss\t3", "Row 2: 'Gauss' is no distribution"},
      {2, "1\n2\n3\nx2\n5", "Row 5: there is no factor to take it"},
  };
  for (const auto& [column, block, why] : refused) {
    paste(grid(), 0, column, block);
    EXPECT_TRUE(message().starts_with("Nothing was pasted. " + why)) << message();
    EXPECT_EQ(list(), before);
  }
  whenShown("Exponential Distribution", [](QWidget& panel) { click(panel, "BCancel"); });
  in<QAction>("AAddExponential").trigger();
  paste(grid(), 0, 0,
        "Name\tLaw\tp1\na\tuniform\t0\t1\t\r\nx3\tlog normal\t1\t2\t\t0.1\t0.9\r\nb\r\n\nx2\tUniform\nflow\n");
  EXPECT_EQ(list(),
            "flow Normal 0, 1, 0.001, 0.999 | x2 Uniform -1.73205080756888, 1.73205080756888 | "
            "x3 LogNormal 1, 2, 0.1, 0.9 | y Relation flow + x2 | a Uniform 0, 1 | b Exponential 1, 0, 0.999");
  does("undo");
  EXPECT_EQ(message(), "Undone: Paste 7 factors");
  paste(grid(), 1, 1, "normal\t4\t2\nNormal\t5\t1\t0.1");
  EXPECT_EQ(list(),
            "flow Normal 0, 1, 0.001, 0.999 | x2 Normal 4, 2, 0.001, 0.999 | x3 Normal 5, 1, 0.1, 0.999 | "
            "y Relation flow + x2");
  QString why;
  EXPECT_TRUE(panel_->editing().move({0, 3}, 2, why));
  EXPECT_EQ(list(),
            "x2 Normal 4, 2, 0.001, 0.999 | flow Normal 0, 1, 0.001, 0.999 | y Relation flow + x2 | "
            "x3 Normal 5, 1, 0.1, 0.999");
}

TEST_F(PrepList, DeletionRefusesAsksAndLeavesFiveRows) {
  open(normals(1));
  select(-1);
  does("deletion", {kNoneSelected});
  does("modify", {kNoneSelected});
  select(0);
  does("deletion", {kDeleteAsked});
  does("deletion", {kDeleteAsked}, {true});
  EXPECT_EQ(list(), "");
  EXPECT_EQ(grid().model()->rowCount(), 5);
  EXPECT_EQ(insensitive(), "BDelete BModify BVisualize BSave BCorrelate ADelete AModify AVisualize ASave ACorrelate ");
  does("undo");
  EXPECT_EQ(insensitive(), "BCorrelate ACorrelate ");
  EXPECT_FALSE(in<QAction>("AUndo").isEnabled());
  does("redo");
  EXPECT_EQ(list(), "");

  const auto correlated = normals(3, kDependenceTree);
  ASSERT_TRUE(correlated->link(1, 0, 0.5));
  open(correlated);
  EXPECT_EQ(insensitive(), "");
  select(1);
  does("deletion",
       {"Error deleting factor:     Can't delete correlated factor.\n  You must erase it from correlation list."});
  EXPECT_FALSE(setCell(1, 1, "Constant"));
  EXPECT_EQ(message(), "Can't change to Constant\n or Relation a correlated factor");
  select(2);
  does("deletion", {kDeleteAsked}, {true});
  EXPECT_EQ(factors().node(1).parent, 0);

  open(normals(2), true);
  EXPECT_EQ(insensitive(), "BAdd BDelete ADelete ");
  for (const int item : {0, 1}) EXPECT_FALSE(menuItem(in<QMenuBar>("MnMenu"), 0, item)->isEnabled());
  EXPECT_FALSE(setCell(0, 0, "flow"));
}

TEST_F(PrepList, AChangedListGivesUpItsSteinSample) {
  const auto stein = normals(2, kSteinSample);
  const double row[] = {1.0, 2.0};
  ASSERT_TRUE(stein->steinInfo.allocate(2) && stein->steinInfo.addRow(row) != 0);
  open(stein);
  EXPECT_TRUE(setCell(0, 2, "3 4"));  // which factors there are stays
  EXPECT_TRUE(factors().hasStein());
  const std::string before = list();
  const std::pair<const char*, std::function<void()>> ways[] = {
      {"a kind typed", [&] { setCell(0, 1, "Constant"); }},
      {"a kind of several", [&] { grid().selectAll(), setCell(0, 1, "Relation"); }},
      {"a name typed", [&] { setCell(2, 0, "more"); }},
      {"a kind pasted", [&] { paste(grid(), 0, 1, "constant\t3"); }},
      {"factors pasted", [&] { paste(grid(), 0, 0, "x1\tconstant\t3"); }},
      {"an order", [&] { select(0), panel_->call("moveDown"); }},
      {"a file", [&] { panel_->editing().setSaved(), panel_->call("open"); }},
  };
  for (const auto& [way, act] : ways) {
    act();
    EXPECT_EQ(takeShown(), Texts{kSteinAsked}) << way;
    EXPECT_EQ(list(), before) << way;
    EXPECT_TRUE(factors().hasStein()) << way;
  }
  select(0);
  for (const bool answer : {false, true}) {
    does("deletion", {kDeleteAsked, kSteinAsked}, {true, answer});
    EXPECT_EQ(factors().factorCount(), answer ? 1 : 2);
    EXPECT_EQ(factors().hasStein(), !answer);
  }
  EXPECT_EQ(factors().correlationMode, kNoCorrelation);
  does("undo");
  EXPECT_EQ(factors().steinInfo.rows(), 1);
  // With the real question, for which the cell's editor loses the keyboard.
  Dialogs* const scripted = Dialogs::exchange(nullptr);
  int asked = 0;
  whenShown("message", [&asked](QWidget& box) {
    ++asked;
    click(box, "cancel");
  });
  activate(window());
  grid().setFocus();
  grid().setCurrentIndex(grid().model()->index(0, 1));
  keys("Constant\r");
  QCoreApplication::processEvents();
  Dialogs::exchange(scripted);
  EXPECT_EQ(asked, 1);
  EXPECT_EQ(list(), before);
}

TEST_F(PrepList, FilesAreOpenedSavedAndImported) {
  const std::string opens = "Open the list of factors file:: open *.fac *.*";
  const std::string imports = "Open the list of factors file:: open *.*";
  const std::string overwrites =
      "Warning: overwrite factors configuration: Do you want to discard the factors stored and load the ones found in "
      "the import file? [^Proceed/^No]";
  const std::string deletesAll = ":    Really delete ALL factors ? [^Yes/^No]";
  const std::string renamed = "flow Normal 0, 1, 0.001, 0.999 | x2 Normal 0, 1, 0.001, 0.999";
  const std::string stein = "a Uniform 1, 2, 0.5; 2, 3, 0.5 | b Uniform 5, 6, 0.5; 6, 7, 0.5";
  const std::string damaged =
      "Error: Error opening factors file. Current data may be inconsistent or corrupt. Resetting Factors\n...";
  const std::string discards = ":    Discard current factors and load from file ? [^Yes/^No]";
  const std::string discardsStein = ":    Discard the old Stein configuration ? [^Yes/^No]";
  const std::string nothing = "Error: Error loading stein file. No factors to import....";
  const std::string nowhere = file("none/x.fac"), saved = file("x.fac"), sample = file("s.txt"), bad = file("bad.fac");
  // What is done, what dialogs answer, what they show, and the list then.
  const std::tuple<const char*, std::deque<bool>, std::deque<std::string>, Texts, std::string> steps[] = {
      {"save", {}, {nowhere}, {kSaveChooser, "Write error:   Error writing output file\n " + nowhere + "..."}, renamed},
      {"save", {}, {saved}, {kSaveChooser}, renamed},
      {"newFactors", {}, {}, {deletesAll}, renamed},
      {"newFactors", {true}, {}, {deletesAll}, ""},
      {"open", {true}, {saved}, {discards, opens}, renamed},
      {"open", {}, {bad}, {opens, damaged}, ""},
      {"undo", {}, {}, {}, renamed},  // nothing is lost
      {"impStein", {false}, {sample}, {imports, overwrites}, renamed},
      {"impStein", {true}, {sample}, {imports, overwrites}, stein},
      {"impStein", {true, true}, {file("none")}, {discardsStein, imports, overwrites, nothing}, stein},
  };
  test::writeFile(bad, "rubbish");
  test::writeFile(sample, "3 2\na\nb\n1 5\n2 7\n3 6\n");
  open(normals(2));
  EXPECT_TRUE(setCell(0, 0, "flow"));
  for (const auto& [callback, answers, files, shown, after] : steps) {
    does(callback, shown, answers, files);
    EXPECT_EQ(list(), after) << callback;
  }

  // A large one is stopped by Esc, which leaves the panel and its list; no other key does anything meanwhile.
  std::string many = "500000 2\na\nb\n";
  for (int i = 0; i < 500000; ++i) many += std::to_string(i) + " 0.5\n";
  test::writeFile(file("many.txt"), many);
  window().activateWindow();
  QTimer::singleShot(0, panel_.get(), [this] {
    grid().selectAll();
    QTest::keyClick(&grid(), Qt::Key_Z, Qt::ControlModifier);
    QTest::keyClick(&window(), Qt::Key_Escape);
  });
  does("impStein", {"...", "...", "..."}, {true, true}, {file("many.txt")});
  EXPECT_EQ(message(), "Stopped: nothing was imported.");
  EXPECT_TRUE(panel_->isVisible());
  EXPECT_EQ(list(), stein);
}

TEST_F(PrepList, LeavingAsksForWhatIsntSavedAndRestoresTheDefaults) {
  open(normals(2));
  does("cancel");
  whenShown("Truncation", [&](QWidget& panel) {
    EXPECT_EQ(panel.findChild<QLabel*>("MlTruncation")->text(), "Truncation: 0.001 - 0.999");
    use(panel, {{"NLeftTrunc", "0.9"}, {"NRightTrunc", "0.1"}, {"BOk", ""}});
    type(panel, {{"NLeftTrunc", "0.05"}, {"NRightTrunc", "0.95"}});
    EXPECT_EQ(TruncatedDistribution::defaultLeftTruncation(), 0.001);  // as long as it is but typed
    use(panel, {{"ChSelected", ""}, {"BOk", ""}});
    panel.findChild<TableView*>("MaFactors")->selectRow(1);
    click(panel, "BOk");
  });
  does("truncation", {"Error: Error setting default truncations", kNoneSelected});
  EXPECT_EQ(TruncatedDistribution::defaultLeftTruncation(), 0.05);
  EXPECT_EQ(list(), "x1 Normal 0, 1, 0.001, 0.999 | x2 Normal 0, 1, 0.05, 0.95");
  const std::string asked = "Exit panel:   Save changes before exiting ? [^Yes/^No]";
  does("cancel", {asked});
  EXPECT_FALSE(panel_->accepted());
  EXPECT_EQ(TruncatedDistribution::defaultLeftTruncation(), 0.001);
  does("cancel", {asked, kSaveChooser}, {true}, {file("x.fac")});
  EXPECT_NE(test::readFile(file("x.fac")), "");
}

TEST_F(PrepList, WhatIsSearchedSortedAndSelectedStaysWithItsFactors) {
  open(normals(5000));
  for (const auto& [letters, found] : {std::pair("x999", 1), {"x49", 111}}) {
    type(window(), {{"TSearch", letters}});
    EXPECT_EQ(grid().model()->rowCount(), found);
  }
  for (int row = 0; row < 111; row += 2) also(row);
  for (const char* const parameters : {"5 2", "6 3"}) EXPECT_TRUE(setCell(0, 2, parameters));
  EXPECT_EQ(factorFields(factors().factor(48)) + factorFields(factors().factor(489)),
            "6, 3, 0.001, 0.9990, 1, 0.001, 0.999");
  EXPECT_EQ(grid().selectionModel()->selectedRows().size(), 56);
  for (const bool sorted : {true, true, false}) {
    Q_EMIT grid().horizontalHeader()->sectionClicked(0);
    EXPECT_EQ(grid().horizontalHeader()->isSortIndicatorShown(), sorted);
  }
  EXPECT_EQ(grid().model()->rowCount(), 111);

  open(normals(3));
  grid().setFocus();
  activate(window());
  select(0);
  also(1);
  QTest::keyClick(&grid(), Qt::Key_Down, Qt::AltModifier);
  QCoreApplication::processEvents();
  EXPECT_EQ(list().substr(0, 2), "x3");
  EXPECT_EQ(grid().selectionModel()->selectedRows().size(), 2);
  // Esc and Enter in the table's own search are the search's.
  QTest::keyClick(&grid(), Qt::Key_F, Qt::ControlModifier);
  keys("x2\r");
  EXPECT_EQ(grid().currentIndex().row(), 2);
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
  EXPECT_TRUE(panel_->isVisible() && grid().hasFocus());
}

TEST_F(PrepList, OtherViewsOfTheList) {
  const auto list = normals(2);
  list->addFactor(makeFactor("Constant"));
  PVisInputFactors view(display_, list, nullptr);
  whenShown("NormInsp", [](QWidget& inspector) {
    EXPECT_EQ(inspector.findChild<QLabel*>("LaName")->text(), "x2");
    inspector.close();
  });
  view.gadget<TableView>("MaFactors")->selectRow(1);
  click(*view.window(), "BVisualize");
  PGraphics graphics(display_, *list, 0, nullptr);
  const auto& charts = [&]() -> const auto& {
    return graphics.gadget<ChartView>("boundGraph")->figure().charts;
  };
  for (const char* const form : {"outline", "area", "histogram", "frequency", "cumulative", "invCumulative"}) {
    graphics.call(form);
    EXPECT_EQ(charts().size(), 1U) << form;
  }
  const auto& complement = std::get<Line>(std::get<XyChart>(charts().front()).layers.front());
  EXPECT_GT(complement.y.front(), complement.y.back());
  graphics.gadget<QComboBox>("SlFactors")->setCurrentIndex(2);
  graphics.call("choose");
  EXPECT_TRUE(charts().empty());
  // A list that a cell's editor would cut short is told by its length.
  std::string points, problem;
  for (int i = 0; i < 10'000; ++i) points += std::to_string(i) + ';';
  const auto large = std::make_shared<FactorList>();
  large->addFactor(readFactorFields("Discrete", points, nullptr, problem));
  open(large);
  const QModelIndex cell = grid().model()->index(0, 2);
  EXPECT_EQ(cell.data().toString(), "10000 points");
  EXPECT_FALSE(cell.flags().testFlag(Qt::ItemIsEditable));
}

}  // namespace
}  // namespace tarvex
