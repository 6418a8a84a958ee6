#include "panels/vels/PSaRandom.h"

#include <QComboBox>
#include <QLabel>
#include <algorithm>
#include <array>

#include "app/RunController.h"
#include "panels/vels/PSaSingle.h"
#include "panels/vels/PVisualSA.h"
#include "panels/vels/ResultDesk.h"
#include "plots/MeasureColumn.h"
#include "postproc/CellFormat.h"
#include "postproc/RegressionStats.h"
#include "toolkit/allow.h"

namespace tarvex {
namespace {

// Kept: the seventh choice has the level of the sixth.
constexpr std::array kLevels = {0.75, 0.9, 0.95, 0.975, 0.99, 0.995, 0.995};
constexpr std::array kLevelTexts = {"0.75", "0.9", "0.95", "0.975", "0.99", "0.995", "0.9995 (counts as 0.995)"};

const RegressionStats& regressionOf(const SensitivityStats& stats) {
  return static_cast<const RegressionStats&>(stats);
}

}  // namespace

PSaRandom::PSaRandom(ResultDesk& desk, const SaKind& kind)
    : PSaResult(desk, kind, Member{}), measure_(RegressionStats::kPear) {
  auto* const measures = gadget<QComboBox>("OIndex");
  for (std::int32_t m = 0; m < RegressionStats::kMeasures; ++m)
    measures->addItem(QString::fromUtf8(RegressionStats::measureName(m).data()));
  for (const char* const level : kLevelTexts) gadget<QComboBox>("OAlpha")->addItem(level);
  start({{"indexChanged", [this] { indexChanged(); }},
         {"alphaChanged", [this] { alphaChanged(); }},
         {"visualSA", [this] { visualSA(); }},
         {"allMeasures", [this] { showAll(); }}});
}

std::vector<std::int32_t> PSaRandom::slots(SaForm) const {
  return {measure_};
}

void PSaRandom::indexChanged() {
  measure_ = std::max(0, gadget<QComboBox>("OIndex")->currentIndex());
  refresh();
}

// What is refused has been said; the list goes back to the level in force.
void PSaRandom::alphaChanged() {
  const auto choice = static_cast<std::size_t>(std::max(0, gadget<QComboBox>("OAlpha")->currentIndex()));
  if (choice < kLevels.size() && !isPast()) static_cast<void>(desk().controller().applyAlpha(kLevels[choice]));
  showAlpha();
}

void PSaRandom::showState() {
  const std::string_view name = RegressionStats::measureName(measure_);
  gadget<QLabel>("MlTitle")->setText(
      QString("Value of the %1s vs. selected factors").arg(QString::fromUtf8(name.data())));
  showDetermination();
  showAlpha();
}

void PSaRandom::showDetermination() {
  const RegressionStats& regression = regressionOf(stats());
  double raw = 0.0, ranks = 0.0, rawAdjusted = 0.0, ranksAdjusted = 0.0;
  const bool known = regression.determination(variable(), raw, ranks) &&
                     regression.determinationAdjusted(variable(), rawAdjusted, ranksAdjusted);
  const auto show = [&](const char* label, double value, RegressionStats::Measure of) {
    const bool computed = known && regression.notComputedReason(variable(), of).empty();
    gadget<QLabel>(label)->setText(computed ? QString::fromStdString(measureText(value))
                                            : QString(kNotComputed.data()));
  };
  show("MlRow", raw, RegressionStats::kPear);
  show("MlRank", ranks, RegressionStats::kSpea);
  show("MlRowAdj", rawAdjusted, RegressionStats::kPear);
  show("MlRankAdj", ranksAdjusted, RegressionStats::kSpea);
  const std::string reason = regression.notComputedReason(variable(), measure_);
  gadget<QLabel>("MlReason")->setText(QString::fromStdString(reason));
  gadget<QLabel>("MlReason")->setVisible(!reason.empty());
}

// A level that the list doesn't have, as files may hold one, stands behind the others.
void PSaRandom::showAlpha() {
  auto* const levels = gadget<QComboBox>("OAlpha");
  const float alpha = regressionOf(stats()).alpha;
  while (levels->count() > static_cast<int>(kLevels.size())) levels->removeItem(levels->count() - 1);
  const auto* const found =
      std::ranges::find_if(kLevels, [&](double level) { return static_cast<float>(level) == alpha; });
  if (found == kLevels.end()) levels->addItem(QString::number(static_cast<double>(alpha)));
  levels->setCurrentIndex(static_cast<int>(found - kLevels.begin()));
  allow(*levels, isPast() ? "These measures are past: the runs that a test needs are gone." : QString());
}

void PSaRandom::showAll() {
  desk().open(std::make_unique<PSaSingle>(desk(), snapshot(), variable()));
}

void PSaRandom::visualSA() {
  openVisualSA(desk());
}

}  // namespace tarvex
