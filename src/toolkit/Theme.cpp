#include "toolkit/Theme.h"

#include <QApplication>
#include <QPainter>
#include <QPalette>
#include <QProxyStyle>
#include <QStyleFactory>
#include <QStyleOption>

namespace tarvex {
namespace {

// A set of colours: surface, field, text, weak text, outline.
struct Surfaces {
  const char* window;
  const char* base;
  const char* alternate;
  const char* button;
  const char* text;
  const char* disabled;
  const char* mid;
  const char* dark;
};

constexpr Surfaces kLight{"#f3f4f5", "#ffffff", "#f7f8f9", "#fbfbfc", "#1d2125", "#8a9096", "#c9cdd2", "#aab0b7"};
constexpr Surfaces kDark{"#25282b", "#1b1d20", "#212427", "#32363a", "#e6e8ea", "#868d94", "#50565c", "#646b72"};

QPalette paletteOf(const Surfaces& surfaces, bool dark) {
  QPalette palette;
  palette.setColor(QPalette::Window, QColor(surfaces.window));
  palette.setColor(QPalette::Base, QColor(surfaces.base));
  palette.setColor(QPalette::AlternateBase, QColor(surfaces.alternate));
  palette.setColor(QPalette::Button, QColor(surfaces.button));
  palette.setColor(QPalette::ToolTipBase, QColor(surfaces.base));
  palette.setColor(QPalette::Mid, QColor(surfaces.mid));
  palette.setColor(QPalette::Dark, QColor(surfaces.dark));
  palette.setColor(QPalette::Highlight, accentColour(dark));
  palette.setColor(QPalette::Link, accentColour(dark));
  palette.setColor(QPalette::HighlightedText, dark ? Qt::black : Qt::white);
  for (const QPalette::ColorRole role :
       {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
    palette.setColor(role, QColor(surfaces.text));
    palette.setColor(QPalette::Disabled, role, QColor(surfaces.disabled));
  }
  palette.setColor(QPalette::PlaceholderText, QColor(surfaces.disabled));
  return palette;
}

// Fusion draws outlines and grids darker than the surface, which on dark ones can't be seen.
class PanelStyle : public QProxyStyle {
 public:
  PanelStyle() : QProxyStyle(QStyleFactory::create("Fusion")) {}

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (element == PE_FrameLineEdit || element == PE_Frame) outline(*option, *painter);
  }
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override {
    QProxyStyle::drawControl(element, option, painter, widget);
    if (element == CE_ProgressBarGroove) outline(*option, *painter);
  }
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* data) const override {
    if (hint == SH_Table_GridLineColor && option != nullptr && isDark(option->palette))
      return static_cast<int>(option->palette.color(QPalette::Mid).rgb());
    return QProxyStyle::styleHint(hint, option, widget, data);
  }

 private:
  static void outline(const QStyleOption& option, QPainter& painter) {
    if (!isDark(option.palette)) return;
    constexpr double kCorner = 2.0;
    const bool active = option.state.testFlag(State_HasFocus);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(option.palette.color(active ? QPalette::Highlight : QPalette::Mid));
    painter.drawRoundedRect(QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5), kCorner, kCorner);
    painter.restore();
  }
};

}  // namespace

bool isDark(const QPalette& palette) {
  return palette.color(QPalette::WindowText).lightness() > palette.color(QPalette::Window).lightness();
}

QColor accentColour(bool dark) {
  return QColor(dark ? "#6cb0f0" : "#1f6fb5");
}

void applyTheme() {
  const bool dark = isDark(QApplication::palette());
  QApplication::setStyle(new PanelStyle);
  QApplication::setPalette(paletteOf(dark ? kDark : kLight, dark));
}

}  // namespace tarvex
