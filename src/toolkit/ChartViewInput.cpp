#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QWheelEvent>
#include <cmath>
#include <variant>

#include "toolkit/ChartImages.h"
#include "toolkit/ChartView.h"
#include "toolkit/chartExport.h"
#include "toolkit/chartText.h"

namespace tarvex {
namespace {

constexpr double kReach = 8.0;         // of the pointer, in units of the page
constexpr double kWheelNotch = 120.0;  // what the wheel reports for one step
constexpr double kZoomStep = 0.8;      // of what is seen, for a step of the wheel or a press of +
constexpr double kShiftStep = 0.1;     // of what is seen, for a press of an arrow
constexpr double kBrushStep = 0.02;    // of an axis, for a press of a key

}  // namespace

bool ChartView::event(QEvent* event) {
  // Keys that a panel may have bound are the chart's while it has the focus.
  if (event->type() == QEvent::ShortcutOverride) {
    auto* const key = static_cast<QKeyEvent*>(event);
    if (key->matches(QKeySequence::Copy)) event->accept();
  }
  return QWidget::event(event);
}

void ChartView::wheelEvent(QWheelEvent* event) {
  const double steps = event->angleDelta().y() / kWheelNotch;
  lay();
  const QPointF place = event->position();
  if (isEmpty() || steps == 0.0) return event->ignore();
  if (zoom_.zoomAt(figure(), images_->layout(), place.x(), place.y(), std::pow(kZoomStep, steps))) update();
  event->accept();
}

std::optional<AxisHit> ChartView::brushAxisAt(const QPointF& place) const {
  std::size_t number = 0;
  if (cobweb(number) == nullptr) return std::nullopt;
  const std::optional<AxisHit> hit = axisAt(images_->layout(), place.x(), place.y(), kReach);
  return hit && hit->chart == number ? hit : std::nullopt;
}

void ChartView::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || isEmpty()) return QWidget::mousePressEvent(event);
  lay();
  pressed_ = pointer_ = event->position();
  drag_ = Drag::Pressed;
  const std::optional<AxisHit> axis = brushAxisAt(pressed_);
  onAxis_ = axis.has_value();
  if (axis) {
    currentAxis_ = axis->axis;
    brush_.begin(std::get<CobwebChart>(figure().charts[axis->chart]), axis->axis, axis->value);
  }
  current_ = chartAt(images_->layout(), pressed_.x(), pressed_.y()).value_or(current_);
  update();
}

void ChartView::dragTo(const QPointF& place) {
  pointer_ = place;
  if (drag_ == Drag::Pressed) {
    if ((place - pressed_).manhattanLength() < QApplication::startDragDistance()) return;
    const FigureLayout& layout = images_->layout();
    if (onAxis_)
      drag_ = Drag::Range;
    else if (current_ < layout.charts.size() && std::holds_alternative<PlaneLayout>(layout.charts[current_]))
      drag_ = Drag::Box;
    else
      return;
  }
  std::size_t number = 0;
  const CobwebChart* const chart = cobweb(number);
  if (drag_ == Drag::Range && chart != nullptr) {
    const auto& web = std::get<CobwebLayout>(images_->layout().charts[number]);
    if (currentAxis_ < web.axes.size() && brush_.dragTo(*chart, web.axes[currentAxis_].map.inverse(place.y())))
      applyBrush(true);
  }
  update();
}

void ChartView::mouseMoveEvent(QMouseEvent* event) {
  if (isEmpty()) return;
  lay();
  if (drag_ == Drag::None)
    point(event->position());
  else
    dragTo(event->position());
}

void ChartView::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || drag_ == Drag::None) return;
  lay();
  const Drag was = std::exchange(drag_, Drag::None);
  if (was == Drag::Pressed) click(event->position());
  const QRectF box = QRectF(pressed_, event->position()).normalized();
  if (was == Drag::Box && framing_ && box.width() > 1.0 && box.height() > 1.0)
    frame(box);
  else if (was == Drag::Box && box.width() > 1.0 && box.height() > 1.0)
    zoom_.showBox(figure(), images_->layout(), current_, {box.x(), box.y(), box.width(), box.height()});
  update();
}

void ChartView::frame(const QRectF& box) {
  if (current_ >= images_->layout().charts.size()) return;
  const auto* const plane = std::get_if<PlaneLayout>(&images_->layout().charts[current_]);
  if (plane == nullptr) return;
  const QRectF within = box.intersected(
      QRectF(plane->frame.plane.x, plane->frame.plane.y, plane->frame.plane.width, plane->frame.plane.height));
  if (within.isEmpty()) return;
  Q_EMIT framed(current_, {valueOn(plane->xAxis, plane->x.inverse(within.left())),
                           valueOn(plane->xAxis, plane->x.inverse(within.right())),
                           valueOn(plane->yAxis, plane->y.inverse(within.bottom())),
                           valueOn(plane->yAxis, plane->y.inverse(within.top()))});
}

void ChartView::click(const QPointF& place) {
  if (onAxis_ && brush_.clear(currentAxis_)) return applyBrush(true);
  const std::optional<Hit> hit = images_->hit(place.x(), place.y(), kReach);
  const bool isRecord =
      hit && (hit->kind == Hit::Kind::Record || hit->kind == Hit::Kind::Bar || hit->kind == Hit::Kind::Slice);
  const bool isRun = hit && hit->kind == Hit::Kind::Run;
  setMarked(isRun || isRecord ? std::vector{hit->number} : std::vector<std::int32_t>());
  if (isRun) Q_EMIT runClicked(hit->number);
  if (isRecord) Q_EMIT recordClicked(hit->number);
}

void ChartView::point(const QPointF& place) {
  const std::optional<AxisHit> axis = brushAxisAt(place);
  setCursor(axis ? Qt::SplitVCursor : Qt::ArrowCursor);
  const std::optional<Hit> hit = images_->hit(place.x(), place.y(), kReach);
  Q_EMIT pointed(hit ? hitText(figure(), *hit) : QString());
}

void ChartView::leaveEvent(QEvent* event) {
  Q_EMIT pointed({});
  QWidget::leaveEvent(event);
}

void ChartView::mouseDoubleClickEvent(QMouseEvent* event) {
  drag_ = Drag::None;
  if (event->button() == Qt::LeftButton) showAll();
}

void ChartView::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) return copyPicture();
  if (event->key() == Qt::Key_E && event->modifiers() == Qt::ControlModifier) return exportPicture();
  if (event->key() == Qt::Key_Escape && drag_ != Drag::None) {
    drag_ = Drag::None;
    return update();
  }
  lay();
  if (isEmpty() || !pressKey(event->key())) QWidget::keyPressEvent(event);
}

bool ChartView::pressKey(int key) {
  const FigureLayout& layout = images_->layout();
  const std::size_t charts = layout.charts.size();
  if (charts == 0) return false;
  std::size_t number = 0;
  const CobwebChart* const web = cobweb(number);
  if (web != nullptr && number == current_ && pressBrushKey(*web, key)) return true;
  switch (key) {
    case Qt::Key_Left:
      zoom_.shift(figure(), layout, current_, -kShiftStep, 0.0);
      break;
    case Qt::Key_Right:
      zoom_.shift(figure(), layout, current_, kShiftStep, 0.0);
      break;
    case Qt::Key_Up:
      zoom_.shift(figure(), layout, current_, 0.0, kShiftStep);
      break;
    case Qt::Key_Down:
      zoom_.shift(figure(), layout, current_, 0.0, -kShiftStep);
      break;
    case Qt::Key_Plus:
    case Qt::Key_Equal:  // the same key without Shift
      zoom_.zoom(figure(), layout, current_, kZoomStep);
      break;
    case Qt::Key_Minus:
      zoom_.zoom(figure(), layout, current_, 1.0 / kZoomStep);
      break;
    case Qt::Key_Home:
      showAll();
      break;
    case Qt::Key_PageDown:
      current_ = (current_ + 1) % charts;
      break;
    case Qt::Key_PageUp:
      current_ = (current_ + charts - 1) % charts;
      break;
    default:
      return false;
  }
  update();
  return true;
}

bool ChartView::pressBrushKey(const CobwebChart& chart, int key) {
  bool changed = false;
  switch (key) {
    case Qt::Key_Left:
      if (currentAxis_ > 0) --currentAxis_;
      break;
    case Qt::Key_Right:
      if (currentAxis_ + 1 < chart.axes.size()) ++currentAxis_;
      break;
    case Qt::Key_Up:
      changed = brush_.move(chart, currentAxis_, kBrushStep);
      break;
    case Qt::Key_Down:
      changed = brush_.move(chart, currentAxis_, -kBrushStep);
      break;
    case Qt::Key_Plus:
    case Qt::Key_Equal:
      changed = brush_.widen(chart, currentAxis_, -kBrushStep);
      break;
    case Qt::Key_Minus:
      changed = brush_.widen(chart, currentAxis_, kBrushStep);
      break;
    case Qt::Key_Delete:
      changed = brush_.clear(currentAxis_);
      break;
    default:
      return false;
  }
  if (changed) applyBrush(true);
  update();
  return true;
}

void ChartView::contextMenuEvent(QContextMenuEvent* event) {
  auto* const menu = new QMenu(this);  // gone with the view, also while it is open
  menu->setAttribute(Qt::WA_DeleteOnClose);
  fillMenu(*menu);
  menu->popup(event->globalPos());
}

void ChartView::fillMenu(QMenu& menu) {
  const auto add = [&](const QString& text, const QKeySequence& key, void (ChartView::*run)()) {
    QAction* const action = menu.addAction(text, this, run);
    action->setShortcut(key);
    action->setEnabled(!isEmpty());
    return action;
  };
  add("&Copy picture", QKeySequence::Copy, &ChartView::copyPicture);
  add("&Save picture...", QKeySequence(Qt::CTRL | Qt::Key_E), &ChartView::exportPicture);
  menu.addSeparator();
  add("Copy &data", {}, &ChartView::copyData);
  add("Save da&ta...", {}, &ChartView::exportData);
  menu.addSeparator();
  add("Show &all", QKeySequence(Qt::Key_Home), &ChartView::showAll)->setEnabled(isZoomed());
}

Figure ChartView::shownFigure() const {
  return figureWithin(figure(), zoom_.visible());
}

void ChartView::copyPicture() {
  if (!isEmpty()) copyFigure(shownFigure());
}

void ChartView::exportPicture() {
  if (!isEmpty()) tarvex::exportPicture(shownFigure(), this);
}

void ChartView::copyData() {
  if (!isEmpty()) tarvex::copyData(figure(), this);
}

void ChartView::exportData() {
  if (!isEmpty()) tarvex::exportData(figure(), this);
}

}  // namespace tarvex
