#include "toolkit/ChartView.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QElapsedTimer>
#include <QImage>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>
#include <cmath>
#include <numeric>
#include <set>

#include "plots/FigureLayout.h"
#include "plots/runPlots.h"
#include "qt/ScriptedDialogs.h"
#include "support/TempDirectory.h"
#include "support/TextFiles.h"
#include "toolkit/chartText.h"

namespace tarvex {
namespace {

using Texts = std::vector<std::string>;

// Columns a and b over `runs` runs: a goes up from 0 to 1, b down.
RunTable table(int runs) {
  RunTable table;
  table.runs = runs;
  table.columns = {{"a", true, {}}, {"b", false, {}}};
  for (int run = 0; run < runs; ++run) {
    table.columns[0].values.push_back(run / (runs - 1.0));
    table.columns[1].values.push_back(10.0 - 10.0 * run / (runs - 1.0));
  }
  return table;
}
Figure scatter(int runs = 11) {
  const RunTable columns = table(runs);
  return scatterPlot(columns.columns[0], columns.columns[1]);
}

class ChartViewTest : public testing::Test {
 protected:
  ChartViewTest() {
    view_.resize(600, 400);
    QObject::connect(&view_, &ChartView::pointed, &view_,
                     [this](const QString& text) { pointed_ = text.toStdString(); });
    QObject::connect(&view_, &ChartView::runClicked, &view_, [this](int run) { clicked_.push_back(run); });
    QObject::connect(
        &view_, &ChartView::brushed, &view_,
        [this](const std::vector<BrushRange>&, int, const QString& text) { brushed_ = text.toStdString(); });
  }
  void show(const Figure& figure) {
    view_.show(figure);
    view_.show();
    QTest::qWait(1);
  }
  QImage image() {
    QElapsedTimer clock;
    clock.start();
    for (view_.grab(); !view_.isReady() && clock.elapsed() < 8000; view_.grab()) QCoreApplication::processEvents();
    EXPECT_TRUE(view_.isReady());
    return view_.grab().toImage();
  }
  PlaneLayout plane() { return std::get<PlaneLayout>(layOut(view_.figure(), {600.0, 400.0}).charts[0]); }
  CobwebLayout web() { return std::get<CobwebLayout>(layOut(view_.figure(), {600.0, 400.0}).charts[0]); }
  // The middle of the plane of run 6 of 11.
  QPoint middle() {
    const PlaneLayout place = plane();
    return {static_cast<int>(std::lround(place.x(0.5))), static_cast<int>(std::lround(place.y(5.0)))};
  }
  void drag(const QPoint& from, const QPoint& to) {
    QTest::mousePress(&view_, Qt::LeftButton, {}, from);
    QTest::mouseMove(&view_, (from + to) / 2);
    QTest::mouseMove(&view_, to);
    QTest::mouseRelease(&view_, Qt::LeftButton, {}, to);
  }
  void wheel(const QPoint& at, int steps) {
    QWheelEvent event(at, at, {}, {0, 120 * steps}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&view_, &event);
  }

  ChartView view_;
  std::string pointed_, brushed_;
  std::vector<int> clicked_;
};

TEST_F(ChartViewTest, ThePointerTellsValuesAndAClickTheRun) {
  show(scatter());
  QTest::mouseMove(&view_, middle());
  EXPECT_EQ(pointed_, "run 6: a = 0.5, b = 5");
  QTest::mouseClick(&view_, Qt::LeftButton, {}, middle());
  EXPECT_EQ(clicked_, std::vector<int>{5});
  QTest::mouseMove(&view_, middle() + QPoint(60, -60));
  EXPECT_EQ(pointed_, "");
}

TEST_F(ChartViewTest, WheelBoxAndKeysZoomAndADoubleClickShowsAll) {
  show(scatter());
  const QImage whole = image();
  const QPoint corner(10, 10);
  const std::function<void()> zooms[] = {[&] { wheel(middle(), 2); },
                                         [&] { drag(middle() - QPoint(50, 40), middle() + QPoint(50, 40)); },
                                         [&] { QTest::keyClick(&view_, Qt::Key_Plus); }};
  for (const auto& zoom : zooms) {
    zoom();
    EXPECT_TRUE(view_.isZoomed());
    EXPECT_NE(image(), whole);
    // The middle stays where it is.
    QTest::mouseMove(&view_, corner);
    QTest::mouseMove(&view_, middle());
    EXPECT_EQ(pointed_.substr(0, 5), "run 6");
    QTest::mouseDClick(&view_, Qt::LeftButton, {}, corner);
    EXPECT_FALSE(view_.isZoomed());
    EXPECT_EQ(image(), whole);
  }
  wheel(middle(), -3);
  EXPECT_FALSE(view_.isZoomed()) << "there is nothing beyond the axes";
  for (int i = 0; i < 300; ++i) wheel(middle(), 1);
  QTest::keyClick(&view_, Qt::Key_Right);
  EXPECT_TRUE(view_.isZoomed());
  image();
}

TEST_F(ChartViewTest, RangesOnAxesAreDrawnMovedCombinedAndCleared) {
  show(cobwebPlot(table(10'000), {}));
  const CobwebLayout place = web();
  const auto at = [&](int axis, double value) {
    return QPoint(static_cast<int>(std::lround(place.axes[axis].x)),
                  static_cast<int>(std::lround(place.axes[axis].map(value))));
  };
  drag(at(0, 0.2), at(0, 0.4));
  ASSERT_EQ(view_.brush().size(), 1U);
  EXPECT_NEAR(view_.brush()[0].lower, 0.2, 0.01);
  EXPECT_NEAR(view_.brush()[0].upper, 0.4, 0.01);
  const std::string first = brushed_;
  EXPECT_NE(first.find(" of 10,000 runs"), std::string::npos);
  EXPECT_NEAR(QString::fromStdString(first).remove(',').section(' ', 0, 0).toInt(), 2000, 100);

  drag(at(0, 0.3), at(0, 0.6));  // moves it
  ASSERT_EQ(view_.brush().size(), 1U);
  EXPECT_NEAR(view_.brush()[0].lower, 0.5, 0.01);
  EXPECT_NEAR(view_.brush()[0].upper, 0.7, 0.01);
  drag(at(1, 0.0), at(1, 4.0));  // b is below 4 where a is above 0.6
  EXPECT_NEAR(QString::fromStdString(brushed_).remove(',').section(' ', 0, 0).toInt(), 1000, 100);
  const auto& dropped = std::get<CobwebChart>(view_.figure().charts[0]).runs.dropped;
  EXPECT_EQ(std::accumulate(dropped.begin(), dropped.end(), 0),
            10'000 - QString::fromStdString(brushed_).remove(',').section(' ', 0, 0).toInt());

  QTest::mouseClick(&view_, Qt::LeftButton, {}, at(0, 0.6));
  QTest::mouseClick(&view_, Qt::LeftButton, {}, at(1, 2.0));
  EXPECT_EQ(brushed_, "10,000 of 10,000 runs");
  EXPECT_TRUE(view_.brush().empty());
  for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Plus, Qt::Key_Plus, Qt::Key_Up}) QTest::keyClick(&view_, key);
  ASSERT_EQ(view_.brush().size(), 1U);
  EXPECT_NEAR(view_.brush()[0].lower, 0.06, 1e-9);
}

TEST_F(ChartViewTest, ANewPaletteASizeAndAnotherFigureAreDrawnAnew) {
  show(scatter());
  const QImage light = image();
  QPalette dark;
  dark.setColor(QPalette::Window, Qt::black);
  dark.setColor(QPalette::WindowText, Qt::white);
  view_.setPalette(dark);
  EXPECT_LT(image().pixelColor(2, 2).lightness(), 60);
  view_.setPalette(QPalette());
  EXPECT_EQ(image(), light);
  view_.resize(500, 300);
  EXPECT_EQ(image().size() / view_.devicePixelRatioF(), QSize(500, 300));
  view_.show(Figure{});
  bool pressed = false;
  view_.setEmptyText("No runs yet.", "&Start", [&] { pressed = true; });
  QTest::mouseClick(view_.findChild<QPushButton*>(), Qt::LeftButton);
  EXPECT_TRUE(pressed);
  image();
  for (const auto key : {Qt::Key_Plus, Qt::Key_Left, Qt::Key_PageDown}) QTest::keyClick(&view_, key);
}

// Lines over many axes take longer than one slice: the view shows them in the end, and may go meanwhile.
TEST_F(ChartViewTest, ALongDrawingServesEventsAndEndsWithItsView) {
  RunTable large = table(200'000);
  for (std::size_t i = 0; i < 10; ++i) large.columns.push_back(large.columns[i]);
  const Figure figure = cobwebPlot(large, {});
  show(figure);
  const QImage seen = image();
  std::set<QRgb> colours;
  for (int y = 0; y < seen.height(); ++y) colours.insert(seen.pixel(seen.width() / 2 + 15, y));
  EXPECT_GT(colours.size(), 20U);
  QPointer<ChartView> other = new ChartView;
  other->resize(1200, 900);
  other->show(figure);
  other->show();
  QTimer::singleShot(30, [&] { delete other; });
  QTRY_VERIFY_WITH_TIMEOUT(other.isNull(), 8000);
}

TEST_F(ChartViewTest, CopiesSavesAndSpeaks) {
  show(scatter());
  view_.setFocus();
  test::TempDirectory directory;
  test::ScriptedDialogs dialogs;
  QTest::keySequence(&view_, QKeySequence::Copy);
  EXPECT_FALSE(QApplication::clipboard()->image().isNull());
  view_.copyData();
  EXPECT_EQ(QApplication::clipboard()->text().section('\n', 0, 1).toStdString(), "run\ta\tb\n1\t0\t10");
  dialogs.files = {directory.file("a.pdf"), directory.file("a.odd"), "/proc/none/a.svg", directory.file("a.csv")};
  QTest::keyClick(&view_, Qt::Key_E, Qt::ControlModifier);
  EXPECT_EQ(test::readFile(directory.file("a.pdf")).substr(0, 5), "%PDF-");
  view_.exportPicture();
  view_.exportPicture();
  view_.exportData();
  EXPECT_EQ(test::readFile(directory.file("a.csv")).substr(0, 14), "run,a,b\n1,0,10");
  ASSERT_EQ(dialogs.shown.size(), 6U);
  EXPECT_EQ(dialogs.shown[2].substr(0, 29), "Error: I cannot save the file");
  EXPECT_EQ(dialogs.shown[4].substr(0, 29), "Error: I cannot save the file");

  QAccessibleInterface* const access = QAccessible::queryAccessibleInterface(&view_);
  ASSERT_NE(access, nullptr);
  EXPECT_EQ(access->role(), QAccessible::Chart);
  EXPECT_NE(access->text(QAccessible::Name), "");
  EXPECT_NE(access->text(QAccessible::Description).indexOf("11 points"), -1)
      << access->text(QAccessible::Description).toStdString();
}

}  // namespace
}  // namespace tarvex
