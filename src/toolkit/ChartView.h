#pragma once

#include <QPoint>
#include <QString>
#include <QWidget>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "plots/Figure.h"
#include "toolkit/ChartBrush.h"
#include "toolkit/ChartZoom.h"

class QMenu;
class QPushButton;

namespace tarvex {

class ChartImages;
struct AxisHit;

// The one view of charts. It shows a figure in the colours of the desktop, as sharp as the screen is.
//
// With the mouse: the wheel zooms at the pointer, a drag draws the box that is to be seen, a double click shows all. On
// an axis of a cobweb a drag draws a range, a drag of the range moves it, a click clears it; runs outside of any range
// drop out. A click on a run or record marks it. By keyboard: arrows, + and -, Home shows all, Page Up and Page Down go
// from chart to chart; in a cobweb left and right choose an axis, up and down move its range, + makes it narrower, -
// wider. Ctrl+C copies the picture, Ctrl+E exports it.
//
// In a panel's file: class ChartView, base QWidget.
class ChartView : public QWidget {
  Q_OBJECT

 public:
  explicit ChartView(QWidget* parent = nullptr);
  ~ChartView() override;

  // Shows the figure, whole, without ranges or marks. A figure of the same charts and axes keeps what is zoomed when
  // `keepZoom` says so: for a figure that follows the user's typing.
  void show(Figure figure, bool keepZoom = false);
  using QWidget::show;
  // Without the ranges, as it was given.
  const Figure& figure() const;
  // A figure without charts shows this sentence, and a button under it if there is a label.
  void setEmptyText(const QString& sentence, const QString& buttonLabel = {}, std::function<void()> pressed = {});

  // Ranges on the axes of the figure's first cobweb; brushed() isn't told.
  void setBrush(std::vector<BrushRange> ranges);
  const std::vector<BrushRange>& brush() const { return brush_.ranges(); }
  // Fills the marks of the runs that the ranges leave out and returns how many are kept; for a panel that has the
  // values, of which a figure knows rounded places alone. Empty: the figure decides.
  std::function<std::int32_t(const std::vector<BrushRange>& ranges, std::vector<std::uint8_t>& dropped)> markRuns;
  // Leaves out runs that another view's ranges leave out.
  void setDropped(const std::vector<std::uint8_t>& dropped);
  // Whether runs that are left out stand behind the others, and don't vanish. True at first.
  void setShowDropped(bool show);
  // Part of a plane, in the values of its axes.
  struct Box {
    double lowerX = 0.0, upperX = 0.0, lowerY = 0.0, upperY = 0.0;
  };
  // A drag in a plane then frames a region, told by framed(), and doesn't zoom.
  void setFraming(bool frames) { framing_ = frames; }
  // The frame of a chart that has a region; nothing takes it away.
  void setRegion(std::size_t chart, const std::optional<Box>& box);
  // Numbers of runs or records that stand out.
  void setMarked(std::vector<std::int32_t> numbers);

  // Nothing is left to be drawn of what was painted last.
  bool isReady() const;
  bool isZoomed() const { return !zoom_.isWhole(); }
  void showAll();

  // What the context menu offers, for a panel's own buttons and keys.
  void copyPicture();
  void exportPicture();
  void copyData();
  void exportData();

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 Q_SIGNALS:
  // What is under the pointer, for the status line; empty over nothing.
  void pointed(const QString& text);
  // The ranges were changed by the user; `kept` of the runs lie in all of them, `text` says so: "214 of 10,000 runs".
  void brushed(const std::vector<tarvex::BrushRange>& ranges, int kept, const QString& text);
  // The user framed a region of the plane of that number.
  void framed(std::size_t chart, const tarvex::ChartView::Box& box);
  // The number of the run, from 0.
  void runClicked(int run);
  // The number of the record: of a bar, a slice, a named point.
  void recordClicked(int record);

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  enum class Drag { None, Pressed, Box, Range };

  bool isEmpty() const;
  QString emptyText() const;
  void lay();  // the page as it is to be seen now
  void drawLater();
  void drawSlowly();
  void paintEmpty(QPainter& painter) const;
  void paintFocus(QPainter& painter) const;
  void placeButton();

  const CobwebChart* cobweb(std::size_t& chart) const;
  std::optional<AxisHit> brushAxisAt(const QPointF& place) const;
  void applyBrush(bool tell);
  void dragTo(const QPointF& place);
  void click(const QPointF& place);
  void frame(const QRectF& box);
  void point(const QPointF& place);
  bool pressKey(int key);
  bool pressBrushKey(const CobwebChart& chart, int key);
  Figure shownFigure() const;
  void fillMenu(QMenu& menu);

  // Shared with a drawing in progress, which serves events and so may outlive the view.
  std::shared_ptr<ChartImages> images_;
  ChartZoom zoom_;
  ChartBrush brush_;
  bool showDropped_ = true;
  bool framing_ = false;
  bool drawing_ = false;
  bool drawSoon_ = false;
  std::size_t current_ = 0;      // the chart that keys work on
  std::size_t currentAxis_ = 0;  // of a cobweb
  Drag drag_ = Drag::None;
  bool onAxis_ = false;  // the press was on an axis of a cobweb
  QPointF pressed_, pointer_;
  QString emptyText_;
  QPushButton* emptyButton_ = nullptr;
};

}  // namespace tarvex
