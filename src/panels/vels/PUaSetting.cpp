#include "panels/vels/PUaSetting.h"

#include <QComboBox>
#include <QKeySequence>
#include <QLabel>
#include <array>

#include "base/NumberText.h"
#include "postproc/CriticalValues.h"
#include "toolkit/allow.h"

namespace tarvex {
namespace {

// How far a level may be from the one that is offered and still be marked: half the width of its window.
constexpr std::array kStudentWindows = {0.01, 0.01, 0.01, 0.001, 0.001, 0.001, 0.0001};
constexpr std::array kKolmogorovWindows = {0.01, 0.01, 0.001, 0.001};

template <std::size_t N>
void fill(QComboBox& choice, const std::array<double, N>& levels, const std::array<double, N>& windows,
          double present) {
  for (const double level : levels) choice.addItem(QString::fromStdString(numberText(level)));
  choice.setCurrentIndex(-1);
  for (std::size_t i = 0; i < N; ++i)
    if (present > levels[i] - windows[i] && present < levels[i] + windows[i])
      choice.setCurrentIndex(static_cast<int>(i));
}

// The level that is marked; without a mark the one that was there.
template <std::size_t N>
double chosen(const QComboBox& choice, const std::array<double, N>& levels, double before) {
  const int index = choice.currentIndex();
  return index < 0 ? before : levels[static_cast<std::size_t>(index)];
}

}  // namespace

PUaSetting::PUaSetting(const Display& display, const UaSettings& settings, const QString& noLogScale, QWidget* parent)
    : Panel(display, "PUaSetting", "SetWin", "Settings for UA", parent), before_(settings) {
  fill(*gadget<QComboBox>("OTcheby"), kStudentLevels, kStudentWindows, settings.tchebyConfidence);
  fill(*gadget<QComboBox>("OKolmog"), kKolmogorovLevels, kKolmogorovWindows, settings.kolmogorovConfidence);
  gadget<QComboBox>("SelScale")->addItems({"Linear", "Logarithmic"});
  gadget<QComboBox>("SelScale")->setCurrentIndex(settings.scale);
  for (const char* const name : {"SelScale", "MlScale"}) allow(*gadget<QWidget>(name), noLogScale);
  gadget<QLabel>("MlMessage")->setText(noLogScale);
  registerCallbacks({{"cancel", [this] { end(false); }},
                     {"ok", [this] { end(true); }},
                     {"cheby", [this] { tell(); }},
                     {"kolmog", [this] { tell(); }}});
  bindKey(QKeySequence(Qt::Key_Escape), [this] { end(false); });
}

void PUaSetting::tell() {
  const UaSettings now = settings();
  const bool changed =
      now.tchebyConfidence != before_.tchebyConfidence || now.kolmogorovConfidence != before_.kolmogorovConfidence;
  gadget<QLabel>("MlMessage")->setText(changed ? "The levels are kept with the study." : QString());
}

UaSettings PUaSetting::settings() {
  return {chosen(*gadget<QComboBox>("OTcheby"), kStudentLevels, before_.tchebyConfidence),
          chosen(*gadget<QComboBox>("OKolmog"), kKolmogorovLevels, before_.kolmogorovConfidence),
          static_cast<HistogramScale>(gadget<QComboBox>("SelScale")->currentIndex())};
}

}  // namespace tarvex
