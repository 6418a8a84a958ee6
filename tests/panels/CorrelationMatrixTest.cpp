#include <QTimer>

#include "panels/CorrelationFixture.h"

namespace tarvex {
namespace {

using test::Texts;

using CorrelationMatrix = test::CorrelationPanelTest;

TEST_F(CorrelationMatrix, TheMatrixIsADraftThatIsJudgedAsAWhole) {
  open(normals(3));
  EXPECT_EQ(message(), "The factors are independent. Type a number into the matrix, or drag factors into the tree.");
  const std::string bad = "Error: Invalid value: Invalid correlation value\n", pair = "x2 and x3: ";
  const std::string zero = "0 is no correlation. The key Delete takes one away.";
  const std::string negative = "The matrix is not positive definite, smallest eigenvalue ";
  const std::string none = ". No correlation can be calculated.";
  // A cell, what is typed there, the pairs then, and what is told.
  const std::tuple<int, int, const char*, std::string, std::string> rows[] = {
      {0, 1, "0.9", "01=0.9 ", "1 of 3 pairs are correlated."},
      {2, 0, " 0.9", "01=0.9 02=0.9 ", negative + "-0.27" + none},
      {1, 2, "1.5", "01=0.9 02=0.9 ", pair + "1.5 lies outside of -1 to 1."},
      {1, 2, "0.0", "01=0.9 02=0.9 ", pair + zero},
      {1, 2, "1e-60", "01=0.9 02=0.9 ", pair + zero},
      {1, 2, "0,5", "01=0.9 02=0.9 ", pair + "'0,5' is no number: decimals stand behind a point."},
      {1, 2, "nan", "01=0.9 02=0.9 ", pair + "nan lies outside of -1 to 1."},
      {1, 2, "-0.9", "01=0.9 02=0.9 12=-0.9 ", negative + "-0.8" + none},
      {0, 1, "", "02=0.9 12=-0.9 ", negative + "-0.27" + none},
      {0, 1, "0.9", "01=0.9 02=0.9 12=-0.9 ", negative + "-0.8" + none},
  };
  for (const auto& [row, column, text, after, told] : rows) {
    EXPECT_EQ(cell(row, column, text), told.starts_with(pair) ? Texts{bad + told} : Texts()) << text;
    EXPECT_EQ(numbers(), after) << text;
    EXPECT_EQ(message(), told) << text;
  }
  EXPECT_FALSE(ok({"Error: The Iman Conover Matrix is not positive definited.\nNo correlation can be calculated...."}));
  click(window(), "BNearest");
  EXPECT_EQ(numbers(), "01=0.499997 02=0.499997 12=-0.499997 ") << "and some room for six digits";
  EXPECT_EQ(message(), "This matrix is valid. No number has moved by more than 0.4.");
  EXPECT_FALSE(enabled("BNearest"));
  panel_->call("undo");
  EXPECT_EQ(message(), "Undone: Nearest valid matrix");
  panel_->call("redo");
  // What stands in an open editor counts, also when it is refused.
  matrix().setCurrentIndex(matrix().model()->index(0, 1));
  matrix().setFocus();
  QTest::keyClick(&matrix(), Qt::Key_F2);
  QTest::keyClicks(window().focusWidget(), "7");
  EXPECT_FALSE(ok({bad + "x1 and x2: 7 lies outside of -1 to 1."}));
  matrix().selectAll();
  QTest::keyClick(&matrix(), Qt::Key_Delete);
  EXPECT_EQ(numbers(), "");
  typeCell(matrix(), 0, 2, "-0.75");
  EXPECT_EQ(label("MlPair"), "x1 with x3: -0.75");
  EXPECT_EQ(in<QComboBox>("OSecond").currentText(), "x3");  // whose preview is at hand
  EXPECT_TRUE(ok());
  const FactorList result = taken();
  EXPECT_EQ(result.correlationMode, kImanConover);
  EXPECT_EQ(result.matrixAt(0, 2), -0.75F);
  EXPECT_EQ(list_->matrixAt(0, 2), 0.0F);
}

TEST_F(CorrelationMatrix, BlocksArePastedAsAWhole) {
  const std::string none = "Nothing was pasted. ";
  // A cell, what is pasted there, the pairs then, or why it is refused.
  const std::tuple<int, int, const char*, std::string, std::string> rows[] = {
      {0, 0, "1\t0.1\t0.2\n0.1\t1\t0.3\r\n0.2\t0.3\t1\n", "01=0.1 02=0.2 12=0.3 ", ""},
      {1, 0, "0.4\n\t\n", "01=0.4 02=0.2 12=0.3 ", ""},
      {0, 0, "\n-0.5\n0\t-0.25\t1", "01=-0.5 12=-0.25 ", ""},
      {2, 2, "\tx3\tx1\nx2\t0.6\t-0.7\n", "01=-0.7 12=0.6 ", ""},
      {0, 0, "x1\tx2\tx3\n1\t0.1\t0.2", "01=0.1 02=0.2 12=0.6 ", ""},
      {0, 0, "1\t0.5\n0.4\t1", "", none + "x2 with x1: 0.4 here, and 0.5 in its mirror."},
      {0, 1, "0.5\t0,6", "", none + "x1 with x3: '0,6' is no number: decimals stand behind a point."},
      {0, 1, "0.5\t1.01", "", none + "x1 with x3: 1.01 lies outside of -1 to 1."},
      {0, 0, "0.5", "", none + "x1 with x1: the diagonal is 1, not 0.5."},
      {2, 1, "0.5\n0.6", "", none + "'0.6' stands outside of the matrix."},
      {0, 1, "rubbish \x01 and\nmore", "", none + "x1 with x2: 'rubbish \x01 and' is no number."},
      {0, 1, " \t ", "", "There is no number to paste."},
  };
  open(normals(3));
  std::string last;
  for (const auto& [row, column, text, after, refused] : rows) {
    paste(matrix(), row, column, text);
    QCoreApplication::processEvents();
    const std::string shown = "Error: Invalid value: Invalid correlation value\n" + refused;
    EXPECT_EQ(takeShown(), refused.empty() ? Texts() : Texts{shown}) << text;
    if (refused.empty()) last = after;
    EXPECT_EQ(numbers(), last) << text;
  }
  matrix().selectAll();
  QTest::keySequence(&matrix(), QKeySequence::Copy);
  EXPECT_EQ(QApplication::clipboard()->text(), "x1\tx2\tx3\n1\t0.1\t0.2\n0.1\t1\t0.6\n0.2\t0.6\t1\n");
  const std::string chooser = "Save table: save *.*";
  does("saveCorrTable", {chooser}, {}, {file("m.txt")});
  EXPECT_EQ(test::splitLines(test::readFile(file("m.txt")))[1],
            "                  x1\t                   1\t                 0.1\t                 0.2\t");
  does("saveCorrTable", {chooser, "Error: I cannot save the file\n..."}, {}, {file("none/m.txt")});
}

TEST_F(CorrelationMatrix, HundredsOfFactorsAreEditedAndTheirNearestMatrixIsStopped) {
  const auto correlated = [](int count, auto value) {
    auto list = normals(count, kImanConover);
    for (int row = 0; row < count; ++row)
      for (int column = 0; column < row; ++column)
        EXPECT_TRUE(list->setMatrix(row, column, static_cast<float>(value(row, column))));
    return list;
  };
  open(correlated(200, [](int, int) { return 0.3; }));
  typeCell(matrix(), 5, 9, "-0.9");
  EXPECT_EQ(message().rfind("The matrix is not positive definite, smallest eigenvalue -", 0), 0U);
  // Esc stops the search, which leaves the panel open.
  open(correlated(120, [](int row, int column) { return (row * column * 31 % 19 - 9) / 10.0; }));
  const std::string before = numbers();
  QTimer::singleShot(0, panel_.get(), [this] { QTest::keyClick(&window(), Qt::Key_Escape); });
  click(window(), "BNearest");
  EXPECT_EQ(numbers(), before);
  EXPECT_TRUE(panel_->isVisible() && enabled("BNearest"));
}

}  // namespace
}  // namespace tarvex
