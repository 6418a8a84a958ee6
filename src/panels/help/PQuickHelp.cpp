#include "panels/help/PQuickHelp.h"

#include <QLabel>
#include <QScreen>
#include <QWidget>
#include <algorithm>
#include <iterator>

#include "panels/help/hintText.h"
#include "toolkit/Display.h"

namespace tarvex {
namespace {

// By the number of the method.
constexpr const char* kPictures[] = {"../help/QFast.bmp",     "../help/QFixed.bmp",  "../help/QLatin.bmp",
                                     "../help/QLpTau.bmp",    "../help/QMorris.bmp", "../help/QRandom.bmp",
                                     "../help/QRepLatin.bmp", "../help/QSobol.bmp"};

}  // namespace

PQuickHelp::PQuickHelp(const Display& display, QWidget* parent)
    : Panel(display, "PQuickHelp", "Quick", "Quick Help", parent) {
  window()->setWindowFlag(Qt::Tool, true);
  window()->setAttribute(Qt::WA_ShowWithoutActivating);
  registerCallbacks({});
}

void PQuickHelp::showMethod(std::int32_t methodId) {
  if (methodId < 0 || methodId >= static_cast<std::int32_t>(std::size(kPictures))) return hide();
  gadget<QLabel>("IcText")->setPixmap(display().bitmap(kPictures[methodId]));
  gadget<QLabel>("TText")->setText(hintText(display(), kPictures[methodId]));
  if (isVisible() || !problems().isEmpty()) return;  // help that can't be shown is no reason to interrupt
  place();
  window()->show();
}

void PQuickHelp::place() {
  const QWidget* const parent = window()->parentWidget();
  if (hasPlace() || parent == nullptr) return;
  window()->adjustSize();
  const QRect beside = parent->window()->frameGeometry();
  const int right = parent->screen()->availableGeometry().right() - window()->width();
  window()->move(std::min(beside.right() + 1, right), beside.top());
}

}  // namespace tarvex
