#include "toolkit/SquareField.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QToolTip>
#include <algorithm>
#include <utility>

namespace tarvex {
namespace {

constexpr int kLargestSquare = 20;  // points of a square, with the gap
constexpr int kLeastSquare = 6;     // that can still be clicked
constexpr int kGap = 1;
constexpr int kSigned = 9;  // from this size on the signs are clear
constexpr int kLegendGap = 14;
constexpr int kLegendMark = 12;

// Legend entries from left to right, in as many lines as they need: calls each with the place of its mark.
template <class Call>
int layLegend(const QFontMetrics& metrics, int width, const QStringList& texts, const Call& call) {
  const int line = std::max(metrics.height(), kLegendMark) + 4;
  int x = 0;
  int y = 0;
  for (const QString& text : texts) {
    const int needed = kLegendMark + 4 + metrics.horizontalAdvance(text) + kLegendGap;
    if (x > 0 && x + needed > width) x = 0, y += line;
    call(QPoint(x, y), text);
    x += needed;
  }
  return y + line;
}

}  // namespace

SquareField::SquareField(QWidget* parent) : QAbstractScrollArea(parent) {
  setFocusPolicy(Qt::StrongFocus);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setFrameShape(QFrame::NoFrame);
}

void SquareField::setStates(std::vector<State> states, std::function<QString(int)> describe) {
  states_ = std::move(states);
  describe_ = std::move(describe);
  counts_.assign(states_.size(), 0);
  arrange();
}

void SquareField::setSquares(std::vector<std::uint8_t> squares) {
  const bool sameCount = squares.size() == squares_.size();
  squares_ = std::move(squares);
  counts_.assign(states_.size(), 0);
  for (std::uint8_t& square : squares_) {
    square = static_cast<std::uint8_t>(std::min<std::size_t>(square, states_.size() - 1));
    ++counts_[square];
  }
  setAccessibleDescription(legendText());
  const bool kept = selected_ < static_cast<int>(squares_.size());
  if (!kept) selected_ = -1;
  if (!sameCount) arrange();
  viewport()->update();
  if (!kept) Q_EMIT selectionChanged();
}

void SquareField::select(int square) {
  const int last = static_cast<int>(squares_.size()) - 1;
  square = std::clamp(square, -1, last);
  if (square == selected_) return;
  selected_ = square;
  if (square >= 0) {
    const QRect at = place(square);
    const int top = legendHeight();
    if (at.top() < top) verticalScrollBar()->setValue(verticalScrollBar()->value() + at.top() - top);
    if (at.bottom() >= viewport()->height())
      verticalScrollBar()->setValue(verticalScrollBar()->value() + at.bottom() + 1 - viewport()->height());
  }
  viewport()->update();
  Q_EMIT selectionChanged();
}

// The largest size at which all are seen.
void SquareField::arrange() {
  const int width = std::max(viewport()->width(), kLargestSquare);
  const int height = std::max(viewport()->height() - legendHeight(), kLargestSquare);
  const int count = static_cast<int>(squares_.size());
  size_ = kLargestSquare;
  const auto lines = [&] { return (count + width / size_ - 1) / (width / size_); };
  while (size_ > kLeastSquare && lines() * size_ > height) --size_;
  columns_ = width / size_;
  const int over = lines() * size_ - height;
  verticalScrollBar()->setRange(0, std::max(over, 0));
  verticalScrollBar()->setPageStep(height);
  verticalScrollBar()->setSingleStep(size_);
  drawSquares();
  viewport()->update();
}

void SquareField::drawSquares() {
  drawn_.clear();
  for (const State& state : states_) drawn_.push_back(square(state));
}

QPixmap SquareField::square(const State& state) const {
  const qreal scale = devicePixelRatioF();
  const int side = size_ - kGap;
  QPixmap picture(QSize(side, side) * scale);
  picture.setDevicePixelRatio(scale);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  const QRectF all(0, 0, side, side);
  painter.setPen(Qt::NoPen);
  if (state.colour.isValid()) painter.fillRect(all, state.colour);
  if (!state.colour.isValid()) {
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawRect(all.adjusted(0.5, 0.5, -0.5, -0.5));
  }
  if (size_ < kSigned || state.sign == Sign::None) return picture;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(Qt::white, std::max(1.5, side / 8.0)));
  const double edge = side / 4.0;
  const QRectF inner = all.adjusted(edge, edge, -edge, -edge);
  if (state.sign == Sign::Dot) painter.setBrush(Qt::white);
  if (state.sign == Sign::Dot || state.sign == Sign::Ring) painter.drawEllipse(inner);
  if (state.sign == Sign::Cross) painter.drawLine(inner.topLeft(), inner.bottomRight());
  if (state.sign == Sign::Cross || state.sign == Sign::Slash) painter.drawLine(inner.bottomLeft(), inner.topRight());
  return picture;
}

QRect SquareField::place(int square) const {
  const int top = legendHeight() + square / columns_ * size_ - verticalScrollBar()->value();
  return {square % columns_ * size_, top, size_ - kGap, size_ - kGap};
}

int SquareField::squareAt(const QPoint& point) const {
  const int line = (point.y() - legendHeight() + verticalScrollBar()->value()) / std::max(size_, 1);
  const int column = point.x() / std::max(size_, 1);
  const int found = line * columns_ + column;
  const bool isOne = point.y() >= legendHeight() && column < columns_ && found < static_cast<int>(squares_.size());
  return isOne ? found : -1;
}

QString SquareField::legendText() const {
  QStringList texts;
  for (std::size_t i = 0; i < states_.size(); ++i) texts << states_[i].name + ' ' + QString::number(counts_[i]);
  return texts.join(", ");
}

// As long as the numbers may get, so that nothing moves while they grow.
int SquareField::legendHeight() const {
  QStringList widest;
  for (const State& state : states_)
    widest << state.name + ' ' + QString::number(std::max<std::size_t>(squares_.size(), 1));
  return layLegend(fontMetrics(), viewport()->width(), widest, [](const QPoint&, const QString&) {}) + 4;
}

void SquareField::paintLegend(QPainter& painter) const {
  painter.fillRect(0, 0, viewport()->width(), legendHeight(), palette().color(QPalette::Window));
  painter.setPen(palette().color(QPalette::WindowText));
  QStringList widest;
  for (const State& state : states_)
    widest << state.name + ' ' + QString::number(std::max<std::size_t>(squares_.size(), 1));
  std::size_t entry = 0;
  layLegend(fontMetrics(), viewport()->width(), widest, [&](const QPoint& at, const QString&) {
    painter.drawPixmap(QRect(at + QPoint(0, 2), QSize(kLegendMark, kLegendMark)), drawn_[entry]);
    painter.drawText(at + QPoint(kLegendMark + 4, fontMetrics().ascent()),
                     states_[entry].name + ' ' + QString::number(counts_[entry]));
    ++entry;
  });
}

void SquareField::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(viewport());
  if (states_.empty()) return;
  const int top = legendHeight();
  const int first = verticalScrollBar()->value() / size_ * columns_;
  const int lines = (viewport()->height() - top) / size_ + 2;
  const int last = std::min(static_cast<int>(squares_.size()), first + lines * columns_);
  for (int i = first; i < last; ++i)
    painter.drawPixmap(place(i).topLeft(), drawn_[squares_[static_cast<std::size_t>(i)]]);
  if (selected_ >= first && selected_ < last) {
    painter.setPen(QPen(palette().color(hasFocus() ? QPalette::Highlight : QPalette::WindowText), 2));
    painter.drawRect(place(selected_));
  }
  paintLegend(painter);
}

bool SquareField::viewportEvent(QEvent* event) {
  if (event->type() != QEvent::ToolTip || !describe_) return QAbstractScrollArea::viewportEvent(event);
  const auto* const help = static_cast<QHelpEvent*>(event);
  const int found = squareAt(help->pos());
  QToolTip::showText(help->globalPos(), found >= 0 ? describe_(found) : toolTip(), viewport());
  return true;
}

void SquareField::resizeEvent(QResizeEvent* event) {
  QAbstractScrollArea::resizeEvent(event);
  arrange();
}

void SquareField::changeEvent(QEvent* event) {
  QAbstractScrollArea::changeEvent(event);
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) arrange();
}

void SquareField::mousePressEvent(QMouseEvent* event) {
  if (const int found = squareAt(event->position().toPoint()); found >= 0) select(found);
}

void SquareField::keyPressEvent(QKeyEvent* event) {
  const int page = std::max(1, (viewport()->height() - legendHeight()) / std::max(size_, 1)) * columns_;
  const int last = static_cast<int>(squares_.size()) - 1;
  const std::pair<int, int> steps[] = {{Qt::Key_Left, -1},        {Qt::Key_Right, 1},      {Qt::Key_Up, -columns_},
                                       {Qt::Key_Down, columns_},  {Qt::Key_PageUp, -page}, {Qt::Key_PageDown, page},
                                       {Qt::Key_Home, -last - 1}, {Qt::Key_End, last + 1}};
  for (const auto& [key, step] : steps)
    if (event->key() == key && last >= 0) return select(std::clamp(std::max(selected_, 0) + step, 0, last));
  QAbstractScrollArea::keyPressEvent(event);
}

QSize SquareField::sizeHint() const {
  return {420, 320};
}

}  // namespace tarvex
