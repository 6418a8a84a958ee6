#pragma once

#include <QAbstractScrollArea>
#include <QColor>
#include <QPixmap>
#include <QString>
#include <cstdint>
#include <functional>
#include <vector>

namespace tarvex {

// Many things of which each is in one of a few states, as a field of small squares, one behind the other in lines. A
// legend above it names the states and counts them. States differ by colour and, where there is room for it, by a sign.
// Squares shrink so that all are seen, down to a least size; then the field scrolls. One can be selected, by a click or
// by the keys of a list. Only what is seen is drawn.
//
// In a panel's file: class SquareField, base QAbstractScrollArea.
class SquareField : public QAbstractScrollArea {
  Q_OBJECT

 public:
  enum class Sign { None, Dot, Ring, Cross, Slash };
  struct State {
    QString name;
    QColor colour;  // invalid: an empty square
    Sign sign = Sign::None;
  };

  explicit SquareField(QWidget* parent = nullptr);

  // What it is about, and what is said of each by its tooltip.
  void setStates(std::vector<State> states, std::function<QString(int)> describe);
  // The state of each, as an index into the states. Requires: states. The selection stays where there is such a square.
  void setSquares(std::vector<std::uint8_t> squares);
  int selected() const { return selected_; }  // -1: none
  void select(int square);
  // Of a square in points, its gap included.
  int squareSize() const { return size_; }

 Q_SIGNALS:
  void selectionChanged();

 protected:
  bool viewportEvent(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  QSize sizeHint() const override;

 private:
  void arrange();
  void drawSquares();
  QPixmap square(const State& state) const;
  QRect place(int square) const;
  int squareAt(const QPoint& point) const;
  QString legendText() const;
  int legendHeight() const;
  void paintLegend(QPainter& painter) const;

  std::vector<State> states_;
  std::function<QString(int)> describe_;
  std::vector<std::uint8_t> squares_;
  std::vector<int> counts_;
  std::vector<QPixmap> drawn_;  // of each state, in the size and the colours of now
  int selected_ = -1;
  int size_ = 0;
  int columns_ = 1;
};

}  // namespace tarvex
