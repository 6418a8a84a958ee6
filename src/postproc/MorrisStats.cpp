#include "postproc/MorrisStats.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "postproc/MeasureSupport.h"
#include "sampling/MorrisSampler.h"
#include "sampling/PrepConfiguration.h"

namespace tarvex {

namespace {

// Kept: an effect is twice the change of the output, whatever step the grid of levels gives. It is the effect per unit
// of probability on grids of an even number of levels, whose step is one half.
constexpr double kEffectFactor = 2.0;

// Whether a trajectory starts at a run, by the number of the factor that it changes.
bool isStart(std::int32_t changed) {
  return changed < 0;
}

bool fits(const MorrisSampler& design, std::int32_t factors) {
  const std::vector<std::int32_t>& changed = design.changedFactor();
  if (changed.size() != static_cast<std::size_t>(design.numSamples)) return false;
  if (!changed.empty() && !isStart(changed.front())) return false;
  return std::ranges::count_if(changed, isStart) <= std::int64_t{design.trajectories()} &&
         std::ranges::all_of(changed, [factors](std::int32_t factor) { return factor < factors; });
}

}  // namespace

bool MorrisStats::computeAll(const PrepConfiguration& prep, const OutputTable& outputs, const Progress& progress) {
  std::string reason;
  const auto* design = designFor<MorrisSampler>(prep, outputs, reason);
  if (design == nullptr) return fail(reason);
  if (design->changedFactor().empty()) return fail(kDesignMissing);
  if (!fits(*design, prep.factors.correlatableCount())) return fail(kDesignDamaged);
  variableCount = outputs.columns();
  makeFactorRecords(prep);
  return computeColumns(outputs, progress, [&](std::int32_t variable, const double* runs, const Progress&) {
    computeVariable(variable, *design, runs);
    return true;
  });
}

// Over the r absolute effects |e| of a factor: mean |sum / r|, spread sqrt((r sum(e^2) - sum(e)^2) / ((r - 1) r)).
// M. D. Morris, Technometrics 33 (1991) 161; absolute effects after F. Campolongo, J. Cariboni, A. Saltelli, Environ.
// Model. Softw. 22 (2007) 1509.
void MorrisStats::computeVariable(std::int32_t variable, const MorrisSampler& design, const double* runs) {
  struct Sums {
    double effects = 0.0;
    double squares = 0.0;
  };
  std::vector<Sums> sums(records.size());  // as many as factors are enough
  const std::vector<std::int32_t>& changed = design.changedFactor();
  for (std::size_t i = 0; i < changed.size(); ++i) {
    if (isStart(changed[i])) continue;
    const double effect = std::fabs(kEffectFactor * (runs[i - 1] - runs[i]));
    Sums& factor = sums[static_cast<std::size_t>(changed[i])];
    factor.effects += effect;
    factor.squares += effect * effect;
  }
  const double r = design.trajectories();
  std::size_t factor = 0;
  for (IndexRecord& record : records) {
    if (record.kind != FactorKind::Uncertain) continue;
    const Sums& sum = sums[factor++];
    double spread = r * sum.squares - sum.effects * sum.effects;
    if (spread < 0.0) spread = 0.0;  // equal effects may round below
    double* slots = record.values.data() + static_cast<std::size_t>(variable) * kSlots;
    slots[kMean] = std::fabs(sum.effects / r);
    slots[kSigma] = std::sqrt(spread / ((r - 1.0) * r));  // a single trajectory has no spread: nan
  }
}

}  // namespace tarvex
