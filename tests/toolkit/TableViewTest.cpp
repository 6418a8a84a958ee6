#include "toolkit/TableView.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QMimeData>
#include <QTest>
#include <cmath>
#include <limits>

namespace tarvex {
namespace {

// Column 0 are names, column 1 numbers, the last one no number.
class SmallSource : public TableSource {
 public:
  int rows() const override { return 4; }
  int columns() const override { return 2; }
  QString header(int column) const override { return column == 0 ? "name" : "value"; }
  QString text(int row, int column) const override {
    return column == 0 ? QString("x%1").arg(row) : QString::number(number(row, column));
  }
  bool isNumeric(int column) const override { return column == 1; }
  double number(int row, int) const override {
    constexpr double kValues[] = {10.0, 9.0, 10.0, std::numeric_limits<double>::quiet_NaN()};
    return kValues[row];
  }
};

std::vector<int> order(const TableModel& model) {
  std::vector<int> rows;
  for (int row = 0; row < model.rowCount(); ++row) rows.push_back(model.sourceRow(row));
  return rows;
}

TEST(TableView, SortsNumbersAsNumbersAndRowsKeepTheirNumber) {
  TableView view;
  view.setSource(std::make_shared<SmallSource>());
  TableModel& model = view.tableModel();
  const auto click = [&] { Q_EMIT view.horizontalHeader()->sectionClicked(1); };
  click();
  EXPECT_EQ(order(model), (std::vector<int>{1, 0, 2, 3}));
  EXPECT_EQ(model.headerData(0, Qt::Vertical, Qt::DisplayRole).toInt(), 2);
  click();
  EXPECT_EQ(order(model), (std::vector<int>{0, 2, 1, 3}));
  click();
  EXPECT_EQ(order(model), (std::vector<int>{0, 1, 2, 3}));
  model.setRows({2, 3});
  model.sort(1, Qt::DescendingOrder);
  EXPECT_EQ(order(model), (std::vector<int>{2, 3}));
  model.setRows({});
  EXPECT_EQ(model.rowCount(), 0);
}

TEST(TableView, CopiesTheSelectionWithItsHeadersAndFinds) {
  TableView view;
  view.setSource(std::make_shared<SmallSource>());
  view.selectAll();
  QTest::keySequence(&view, QKeySequence::Copy);
  const QMimeData* const copied = QApplication::clipboard()->mimeData();
  EXPECT_EQ(copied->text().toStdString(), "name\tvalue\nx0\t10\nx1\t9\nx2\t10\nx3\tnan\n");
  EXPECT_NE(copied->html().indexOf("<td>x3</td><td>nan</td>"), -1);

  int column = 0;
  EXPECT_EQ(view.tableModel().find("X2", 0, column), 2);
  column = 1;
  EXPECT_EQ(view.tableModel().find("x0", 3, column), 0);  // goes round
  column = 0;
  EXPECT_EQ(view.tableModel().find("no", 0, column), -1);
}

}  // namespace
}  // namespace tarvex
