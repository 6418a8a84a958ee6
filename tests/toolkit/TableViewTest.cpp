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

// Names and values that can be changed; a value must be a number, and below 0 it is a draft.
class Drafts : public EditableTableSource {
 public:
  std::vector<std::pair<QString, QString>> cells = {{"x1", "1"}, {"x2", "2"}, {"x3", "3"}};

  int rows() const override { return static_cast<int>(cells.size()); }
  int columns() const override { return 2; }
  QString header(int column) const override { return column == 0 ? "name" : "value"; }
  QString headerToolTip(int column) const override { return column == 0 ? "" : "A positive number"; }
  QString text(int row, int column) const override { return column == 0 ? at(row).first : at(row).second; }
  double number(int row, int) const override { return at(row).second.toDouble(); }
  QString setText(int row, int column, const QString& text) override {
    bool isNumber = true;
    if (column == 1) static_cast<void>(text.toDouble(&isNumber));
    if (!isNumber) return '\'' + text + "' is no number";
    auto& cell = cells[static_cast<std::size_t>(row)];
    (column == 0 ? cell.first : cell.second) = text;
    return {};
  }
  QString problem(int row, int column) const override { return column == 1 && number(row, 1) < 0 ? "negative" : ""; }
  bool appendRow() override { return cells.emplace_back(), true; }
  bool canMoveRows() const override { return true; }
  bool moveRow(int from, int to) override {
    const auto row = at(from);
    cells.erase(cells.begin() + from);
    cells.insert(cells.begin() + to, row);
    return true;
  }
  std::string all() const {
    QString text;
    for (const auto& [name, value] : cells) text += name + '=' + value + ' ';
    return text.toStdString();
  }

 private:
  const std::pair<QString, QString>& at(int row) const { return cells[static_cast<std::size_t>(row)]; }
};

TEST(TableView, TypedPastedAndMovedRowsAreAskedOfTheSource) {
  TableView view;
  const auto source = std::make_shared<Drafts>();
  view.setEditable(source);
  std::string refused;
  int edits = 0;
  QObject::connect(&view, &TableView::refused, &view, [&](const QString& why) { refused = why.toStdString(); });
  QObject::connect(&view, &TableView::edited, &view, [&] { ++edits; });
  TableModel& model = view.tableModel();
  EXPECT_EQ(model.headerData(1, Qt::Horizontal, Qt::ToolTipRole), "A positive number");
  EXPECT_FALSE(model.setData(model.index(0, 1), "abc", Qt::EditRole));
  EXPECT_EQ(refused, "'abc' is no number");
  EXPECT_TRUE(model.setData(model.index(0, 1), "-5", Qt::EditRole));
  EXPECT_EQ(model.data(model.index(0, 1), Qt::ToolTipRole), "negative");
  EXPECT_EQ(edits, 1);

  const struct {
    int row, column;
    const char* text;
    const char* after;
    const char* why;
  } pastes[] = {
      {2, 0, "a\t7\r\nb\t8\r\n", "x1=-5 x2=2 a=7 b=8 ", ""},
      {0, 0, "name\tvalue\ny\t9\n", "y=9 x2=2 a=7 b=8 ", ""},
      {1, 1, "4\nfour\n6", "y=9 x2=4 a=7 b=8 ", "row 3, value: 'four' is no number"},
      {0, 1, "1\t2", "y=1 x2=4 a=7 b=8 ", "row 1, there is no column for '2'"},
  };
  for (const auto& [row, column, text, after, why] : pastes) {
    view.setCurrentIndex(model.index(row, column));
    QApplication::clipboard()->setText(text);
    QTest::keySequence(&view, QKeySequence::Paste);
    EXPECT_EQ(source->all(), after);
    EXPECT_EQ(refused, why);
  }
  view.setCurrentIndex(model.index(0, 0));
  QTest::keyClick(&view, Qt::Key_Down, Qt::AltModifier);
  EXPECT_EQ(source->all(), "x2=4 y=1 a=7 b=8 ");
  view.verticalHeader()->moveSection(3, 0);
  EXPECT_EQ(source->all(), "b=8 x2=4 y=1 a=7 ");
  EXPECT_EQ(view.verticalHeader()->visualIndex(3), 3);
}

}  // namespace
}  // namespace tarvex
