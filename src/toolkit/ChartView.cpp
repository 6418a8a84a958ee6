#include "toolkit/ChartView.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QTimer>
#include <algorithm>
#include <array>
#include <limits>
#include <utility>
#include <variant>

#include "plots/drawFigure.h"
#include "toolkit/ChartImages.h"
#include "toolkit/Theme.h"
#include "toolkit/chartAccess.h"
#include "toolkit/chartText.h"

namespace tarvex {
namespace {

// What is drawn at once, so that nothing of it is seen half done; and how long a longer drawing keeps the user waiting
// for an answer.
constexpr qint64 kPaintMilliseconds = 100;
constexpr qint64 kSliceMilliseconds = 40;
constexpr int kMargin = 16;
constexpr QSize kLeastSize(240, 160);
constexpr QSize kUsualSize(560, 400);

}  // namespace

ChartView::ChartView(QWidget* parent) : QWidget(parent), images_(std::make_shared<ChartImages>(Figure{})) {
  installChartAccess();
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  setAttribute(Qt::WA_OpaquePaintEvent);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  emptyText_ = "There is nothing to show.";
}

ChartView::~ChartView() = default;

const Figure& ChartView::figure() const {
  return images_->figure();
}

bool ChartView::isEmpty() const {
  return figure().charts.empty();
}

void ChartView::show(Figure figure, bool keepZoom) {
  images_ = std::make_shared<ChartImages>(std::move(figure));
  if (!keepZoom) zoom_.showAll();
  brush_.set({});
  drag_ = Drag::None;
  current_ = std::min(current_, std::max<std::size_t>(this->figure().charts.size(), 1) - 1);
  placeButton();
  update();
  announceChart(*this);
}

void ChartView::setEmptyText(const QString& sentence, const QString& buttonLabel, std::function<void()> pressed) {
  emptyText_ = sentence;
  delete std::exchange(emptyButton_, nullptr);
  if (!buttonLabel.isEmpty()) {
    emptyButton_ = new QPushButton(buttonLabel, this);
    emptyButton_->setToolTip(sentence);
    connect(emptyButton_, &QPushButton::clicked, this, [run = std::move(pressed)] {
      if (run) run();
    });
  }
  placeButton();
  update();
}

// The figure knows best.
QString ChartView::emptyText() const {
  return figure().emptyText.empty() ? emptyText_ : QString::fromStdString(figure().emptyText);
}

void ChartView::placeButton() {
  if (emptyButton_ == nullptr) return;
  emptyButton_->setVisible(isEmpty());
  const QSize size = emptyButton_->sizeHint();
  emptyButton_->setGeometry((width() - size.width()) / 2, height() / 2 + kMargin, size.width(), size.height());
}

void ChartView::showAll() {
  if (zoom_.showAll()) update();
}

void ChartView::setMarked(std::vector<std::int32_t> numbers) {
  images_->setMarked(std::move(numbers));
  update();
}

void ChartView::setDropped(const std::vector<std::uint8_t>& dropped) {
  images_->setDropped(dropped, showDropped_);
  update();
}

void ChartView::setShowDropped(bool show) {
  showDropped_ = show;
  applyBrush(false);
}

void ChartView::setBrush(std::vector<BrushRange> ranges) {
  brush_.set(std::move(ranges));
  applyBrush(false);
}

void ChartView::setRegion(std::size_t chart, const std::optional<Box>& box) {
  constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
  images_->setRegion(chart, box ? std::array{box->lowerX, box->upperX, box->lowerY, box->upperY}
                                : std::array{kNone, kNone, kNone, kNone});
  update();
}

const CobwebChart* ChartView::cobweb(std::size_t& chart) const {
  for (chart = 0; chart < figure().charts.size(); ++chart)
    if (const auto* const found = std::get_if<CobwebChart>(&figure().charts[chart])) return found;
  return nullptr;
}

void ChartView::applyBrush(bool tell) {
  std::size_t number = 0;
  const CobwebChart* const chart = cobweb(number);
  if (chart == nullptr) return;
  std::vector<std::uint8_t> dropped;
  const std::int32_t kept = markRuns ? markRuns(brush_.ranges(), dropped) : brush_.mark(*chart, dropped);
  const std::size_t axes = chart->axes.size();
  const auto runs = static_cast<std::int64_t>(chart->runCount());
  images_->setDropped(dropped, showDropped_);
  for (std::size_t axis = 0; axis < axes; ++axis) {
    const BrushRange* const range = brush_.on(axis);
    images_->setFilter(number, axis,
                       range != nullptr ? std::optional(std::pair(range->lower, range->upper)) : std::nullopt);
  }
  update();
  if (!tell) return;
  const QString text = groupedNumber(kept) + " of " + groupedNumber(runs) + (runs == 1 ? " run" : " runs");
  Q_EMIT pointed(text);
  Q_EMIT brushed(brush_.ranges(), kept, text);
}

QSize ChartView::sizeHint() const {
  return kUsualSize;
}

QSize ChartView::minimumSizeHint() const {
  return kLeastSize;
}

bool ChartView::isReady() const {
  return isEmpty() || (images_->isReady() && !drawing_);
}

void ChartView::lay() {
  images_->setInks(isDark(palette()) ? kDarkInks : Inks{});
  images_->setPage(size(), devicePixelRatioF(), zoom_.visible());
}

void ChartView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  if (isEmpty()) return paintEmpty(painter);
  lay();
  // Within a drawing that serves events the old images do.
  if (!images_->isReady() && !drawing_) {
    QElapsedTimer clock;
    clock.start();
    if (!images_->draw(Progress([&](double) { return clock.elapsed() < kPaintMilliseconds; }))) drawLater();
  }
  painter.fillRect(rect(), palette().base());
  images_->paint(painter);
  if (drag_ == Drag::Box) {
    painter.setPen(QPen(palette().color(QPalette::Highlight), 1.0, Qt::DashLine));
    painter.drawRect(QRectF(pressed_, pointer_).normalized());
  }
  if (hasFocus()) paintFocus(painter);
}

void ChartView::paintEmpty(QPainter& painter) const {
  painter.fillRect(rect(), palette().base());
  painter.setPen(palette().color(QPalette::PlaceholderText));
  const QRect area = rect().adjusted(kMargin, kMargin, -kMargin, -kMargin);
  const bool over = emptyButton_ != nullptr;
  painter.drawText(over ? QRect(area.left(), area.top(), area.width(), area.height() / 2) : area,
                   (over ? Qt::AlignHCenter | Qt::AlignBottom : Qt::AlignCenter) | Qt::TextWordWrap,
                   hasFont() ? emptyText() : QString());
}

// A frame around the chart that keys work on, and a mark at the axis.
void ChartView::paintFocus(QPainter& painter) const {
  const FigureLayout& layout = images_->layout();
  if (current_ >= layout.charts.size()) return;
  painter.setPen(QPen(palette().color(QPalette::Highlight), 1.0));
  painter.setBrush(palette().color(QPalette::Highlight));
  if (const auto* const web = std::get_if<CobwebLayout>(&layout.charts[current_])) {
    if (currentAxis_ >= web->axes.size()) return;
    constexpr double kMark = 5.0;
    const QPointF tip(web->axes[currentAxis_].x, web->plane.bottom() + 2.0);
    painter.drawPolygon(QPolygonF({tip, tip + QPointF(-kMark, kMark), tip + QPointF(kMark, kMark)}));
    return;
  }
  painter.setBrush(Qt::NoBrush);
  const Rect area = std::visit([](const auto& chart) { return chart.area; }, layout.charts[current_]);
  painter.drawRect(QRectF(area.x, area.y, area.width, area.height).adjusted(-2.0, -2.0, 2.0, 2.0));
}

void ChartView::drawLater() {
  if (drawSoon_) return;
  drawSoon_ = true;
  QTimer::singleShot(0, this, [this] {
    drawSoon_ = false;
    drawSlowly();
  });
}

// Serves events between slices; what they change ends this drawing and begins another. The view may not outlive it.
void ChartView::drawSlowly() {
  if (drawing_) return;
  drawing_ = true;
  lay();
  const std::shared_ptr<ChartImages> images = images_;
  const QPointer<ChartView> self(this);
  const int request = images->changes();
  QElapsedTimer clock;
  clock.start();
  const bool drawn = images->draw(Progress([&](double) {
    if (clock.elapsed() < kSliceMilliseconds) return true;
    QCoreApplication::processEvents();
    clock.restart();
    return !self.isNull() && self->images_ == images && images->changes() == request;
  }));
  if (self.isNull()) return;
  drawing_ = false;
  if (drawn && images == images_) return update();
  drawLater();
}

void ChartView::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::EnabledChange) update();
  QWidget::changeEvent(event);
}

void ChartView::resizeEvent(QResizeEvent* event) {
  placeButton();
  QWidget::resizeEvent(event);
}

}  // namespace tarvex
