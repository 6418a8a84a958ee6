#include <fmt/format.h>

#include <cmath>

#include "postproc/MeasureSlots.h"
#include "postproc/MorrisStats.h"
#include "report/MeasureSummary.h"
#include "report/Table.h"

namespace tarvex {

namespace {

constexpr double kSpreadsMuch = 0.5;  // sigma over mu*, the middle one of the plane's guide lines
constexpr double kWeak = 0.05;        // of the largest mu*
constexpr double kErrorsApart = 2.0;

double sigmaOf(const SensitivityStats& statistics, const Measured& factor, std::int32_t variable) {
  return measureValue(statistics, statistics.records[factor.record], variable, MorrisStats::kSigma).value_or(0.0);
}

}  // namespace

MeasureSummary summariseEffects(const SensitivityStats& statistics, std::int32_t variable,
                                const MeasureContext& context) {
  const std::vector<Measured> factors = measuredFactors(statistics, variable, MorrisStats::kMean);
  const double largest = factors.front().value;
  if (!(largest > 0.0))
    return {fmt::format("No factor changes {} in any step of this design.", context.variable), "", ""};
  std::vector<std::string> told, bent, weak;
  std::string ties;
  for (std::size_t i = 0; i < factors.size(); ++i) {
    const Measured& factor = factors[i];
    const double sigma = sigmaOf(statistics, factor, variable);
    if (told.size() < kToldFactors && factor.value >= kWeak * largest)
      told.push_back(fmt::format("{} (mu* {})", factor.name, cell(factor.value)));
    if (factor.value < kWeak * largest) weak.push_back(factor.name);
    if (i >= kToldFactors) continue;
    if (sigma > kSpreadsMuch * factor.value) bent.push_back(factor.name);
    if (i + 1 == factors.size() || context.trajectories <= 0) continue;
    // The mean of the sizes is known at least as well as that of the effects.
    const double error =
        std::hypot(sigma, sigmaOf(statistics, factors[i + 1], variable)) / std::sqrt(double(context.trajectories));
    if (factor.value - factors[i + 1].value <= kErrorsApart * error)
      ties += fmt::format("{}{} and {}", ties.empty() ? "" : ", ", factor.name, factors[i + 1].name);
  }
  MeasureSummary summary;
  summary.leads = fmt::format("By the elementary effects of Morris {} reacts most to {}.", context.variable,
                              listed(told, kToldFactors));
  summary.trust = fmt::format("mu* puts factors in an order and is no share of the variance; it rests on {} a factor. ",
                              counted(context.trajectories, "effect"));
  if (!ties.empty()) summary.trust += "Too close for their order to be settled by so many: " + ties + ". ";
  summary.trust += bent.empty() ? "The effects of the first factors are much the same wherever they are taken. "
                                : "The effects of " + listed(bent, kToldNames) +
                                      " depend on where they are taken (sigma): not linear, or in interaction. ";
  if (!weak.empty())
    summary.next = fmt::format("{} {} below a twentieth of the largest effect: candidates to be fixed. ",
                               listed(weak, kToldNames), weak.size() == 1 ? "is" : "are");
  summary.next +=
      "How much each of the first ones contributes, a design for shares of the variance (FAST, Sobol) tells.";
  return summary;
}

}  // namespace tarvex
