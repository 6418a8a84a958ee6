#include <QElapsedTimer>

#include "panels/CorrelationFixture.h"

namespace tarvex {
namespace {

using test::Texts;

using CorrelationMatrix = test::CorrelationPanelTest;

TEST_F(CorrelationMatrix, TheMatrixIsADraftThatIsJudgedAsAWhole) {
  open(normals(3));
  EXPECT_EQ(label("MlMessage"),
            "The factors are independent. Type a number into the matrix, or drag factors into the tree.");
  const std::string bad = "Error: Invalid value: Invalid correlation value\nx2 and x3: ";
  const std::string refused =
      "The matrix is not positive definite, smallest eigenvalue -0.8. No correlation can be calculated.";
  const std::string contrary =
      "The matrix is not positive definite, smallest eigenvalue -0.27. No correlation can be calculated.";
  const struct {
    int row, column;
    const char* text;
    std::string shown, numbers, message;
  } rows[] = {
      {0, 1, "0.9", "", "01=0.9 ", "1 of 3 pairs are correlated."},
      {2, 0, " 0.9", "", "01=0.9 02=0.9 ", contrary},
      {1, 2, "1.5", bad + "1.5 lies outside of -1 to 1.", "01=0.9 02=0.9 ", "x2 and x3: 1.5 lies outside of -1 to 1."},
      {1, 2, "0.0", bad + "0 is no correlation. The key Delete takes one away.", "01=0.9 02=0.9 ", ""},
      {1, 2, "1e-60", bad + "0 is no correlation. The key Delete takes one away.", "01=0.9 02=0.9 ", ""},
      {1, 2, "0,5", bad + "'0,5' is no number: decimals stand behind a point.", "01=0.9 02=0.9 ", ""},
      {1, 2, "nan", bad + "nan lies outside of -1 to 1.", "01=0.9 02=0.9 ", ""},
      {1, 2, "-0.9", "", "01=0.9 02=0.9 12=-0.9 ", refused},
      {0, 1, "", "", "02=0.9 12=-0.9 ", contrary},
      {0, 1, "0.9", "", "01=0.9 02=0.9 12=-0.9 ", refused},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(cell(row.row, row.column, row.text), row.shown.empty() ? Texts() : Texts{row.shown}) << row.text;
    EXPECT_EQ(numbers(), row.numbers) << row.text;
    if (row.message.empty()) continue;
    EXPECT_EQ(label("MlMessage"), row.message) << row.text;
  }
  const auto [shown, left] = ok();
  expectShown(shown,
              {"Error: The Iman Conover Matrix is not positive definited.\nNo correlation can be calculated...."});
  EXPECT_FALSE(left);
  click(*panel_->window(), "BNearest");
  EXPECT_EQ(numbers(), "01=0.499997 02=0.499997 12=-0.499997 ") << "and some room for six digits";
  EXPECT_EQ(label("MlMessage"), "This matrix is valid. No number has moved by more than 0.4.");
  EXPECT_FALSE(panel_->gadget<QWidget>("BNearest")->isEnabled());
  EXPECT_EQ(panel_->undo().undoName(), "Nearest valid matrix");
  panel_->call("undo");
  EXPECT_EQ(label("MlMessage"), "Undone: Nearest valid matrix");
  panel_->call("redo");
  // What stands in an open editor counts, also when it is refused.
  matrix().setCurrentIndex(matrix().model()->index(0, 1));
  matrix().setFocus();
  QTest::keyClick(&matrix(), Qt::Key_F2);
  QTest::keyClicks(panel_->window()->focusWidget(), "7");
  EXPECT_EQ(ok(),
            std::pair(Texts{"Error: Invalid value: Invalid correlation value\nx1 and x2: 7 lies outside of -1 to 1."},
                      false));
  matrix().selectAll();
  QTest::keyClick(&matrix(), Qt::Key_Delete);
  EXPECT_EQ(numbers(), "");
  typeCell(matrix(), 0, 2, "-0.75");
  EXPECT_EQ(label("MlPair"), "x1 with x3: -0.75");
  EXPECT_EQ(panel_->gadget<QComboBox>("OSecond")->currentText(), "x3");  // whose preview is at hand
  EXPECT_EQ(ok(), std::pair(Texts(), true));
  FactorList result;
  takeInto(result);
  EXPECT_EQ(result.correlationMode, kImanConover);
  EXPECT_EQ(result.matrixAt(0, 2), -0.75F);
  EXPECT_EQ(list_->matrixAt(0, 2), 0.0F);
}

TEST_F(CorrelationMatrix, BlocksArePastedAsAWhole) {
  const std::string none = "Error: Invalid value: Invalid correlation value\nNothing was pasted. ";
  const struct {
    int row, column;
    const char* text;
    std::string shown, numbers;
  } rows[] = {
      {0, 0, "1\t0.1\t0.2\n0.1\t1\t0.3\r\n0.2\t0.3\t1\n", "", "01=0.1 02=0.2 12=0.3 "},
      {1, 0, "0.4\n\t\n", "", "01=0.4 02=0.2 12=0.3 "},
      {0, 0, "\n-0.5\n0\t-0.25\t1", "", "01=-0.5 12=-0.25 "},
      {2, 2, "\tx3\tx1\nx2\t0.6\t-0.7\n", "", "01=-0.7 12=0.6 "},
      {0, 0, "x1\tx2\tx3\n1\t0.1\t0.2", "", "01=0.1 02=0.2 12=0.6 "},
      {0, 0, "1\t0.5\n0.4\t1", none + "x2 with x1: 0.4 here, and 0.5 in its mirror.", ""},
      {0, 1, "0.5\t0,6", none + "x1 with x3: '0,6' is no number: decimals stand behind a point.", ""},
      {0, 1, "0.5\t1.01", none + "x1 with x3: 1.01 lies outside of -1 to 1.", ""},
      {0, 0, "0.5", none + "x1 with x1: the diagonal is 1, not 0.5.", ""},
      {2, 1, "0.5\n0.6", none + "'0.6' stands outside of the matrix.", ""},
      {0, 1, "rubbish \x01 and\nmore", none + "x1 with x2: 'rubbish \x01 and' is no number.", ""},
      {0, 1, " \t ", "Error: Invalid value: Invalid correlation value\nThere is no number to paste.", ""},
  };
  open(normals(3));
  std::string last;
  for (const auto& row : rows) {
    paste(matrix(), row.row, row.column, row.text);
    QCoreApplication::processEvents();
    EXPECT_EQ(takeShown(), row.shown.empty() ? Texts() : Texts{row.shown}) << row.text;
    if (!row.numbers.empty()) last = row.numbers;
    EXPECT_EQ(numbers(), last) << row.text;
  }
  matrix().selectAll();
  QTest::keySequence(&matrix(), QKeySequence::Copy);
  EXPECT_EQ(QApplication::clipboard()->text(), "x1\tx2\tx3\n1\t0.1\t0.2\n0.1\t1\t0.6\n0.2\t0.6\t1\n");
  step(*panel_, "saveCorrTable", {"Save table: save *.*"}, {}, {file("m.txt")});
  EXPECT_EQ(test::splitLines(test::readFile(file("m.txt")))[1],
            "                  x1\t                   1\t                 0.1\t                 0.2\t");
  step(*panel_, "saveCorrTable", {"Save table: save *.*", "Error: I cannot save the file\n..."}, {},
       {file("none/m.txt")});
}

TEST_F(CorrelationMatrix, TwoHundredFactorsAreEditedWithoutLag) {
  const auto correlated = [](int count, auto value) {
    auto list = normals(count, kImanConover);
    for (int row = 0; row < count; ++row)
      for (int column = 0; column < row; ++column)
        EXPECT_TRUE(list->setMatrix(row, column, static_cast<float>(value(row, column))));
    return list;
  };
  open(correlated(200, [](int, int) { return 0.3; }));
  QElapsedTimer timer;
  timer.start();
  typeCell(matrix(), 5, 9, "-0.9");
  QCoreApplication::processEvents();
  std::printf("an edit of 200 x 200, typed, judged, shown: %d ms\n", static_cast<int>(timer.elapsed()));
  EXPECT_LT(timer.elapsed(), 1000);  // 100 ms on a machine of its own
  EXPECT_EQ(label("MlMessage").rfind("The matrix is not positive definite, smallest eigenvalue -", 0), 0U);
  // The search for the nearest one is stopped by Esc, which leaves the panel open.
  open(correlated(120, [](int row, int column) { return (row * column * 31 % 19 - 9) / 10.0; }));
  const std::string before = numbers();
  QTimer::singleShot(0, panel_.get(), [this] { QTest::keyClick(panel_->window(), Qt::Key_Escape); });
  click(*panel_->window(), "BNearest");
  EXPECT_EQ(numbers(), before);
  EXPECT_TRUE(panel_->isVisible() && panel_->gadget<QWidget>("BNearest")->isEnabled());
}

}  // namespace
}  // namespace tarvex
