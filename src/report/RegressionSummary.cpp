#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "postproc/MeasureSlots.h"
#include "postproc/RegressionStats.h"
#include "report/MeasureSummary.h"
#include "report/Table.h"

namespace tarvex {

namespace {

// Below this share of the variance a regression leaves out too much to rank factors by it.
constexpr double kFairFit = 0.7;
constexpr double kTwoErrors = 2.0;  // standard errors that a difference has to exceed before it is believed

// The regression on ranks holds for any monotone model; without it what there is.
RegressionStats::Measure leadingMeasure(const RegressionStats& statistics, std::int32_t variable) {
  for (const auto measure : {RegressionStats::kSrrc, RegressionStats::kSpea, RegressionStats::kSrc})
    if (statistics.notComputedReason(variable, measure).empty()) return measure;
  return RegressionStats::kPear;
}

std::string measurePhrase(RegressionStats::Measure measure) {
  switch (measure) {
    case RegressionStats::kSrrc:
      return "regression on ranks (SRRC)";
    case RegressionStats::kSpea:
      return "correlation of ranks (SPEA)";
    case RegressionStats::kSrc:
      return "regression (SRC)";
    default:
      return "correlation (PEAR)";
  }
}

std::string significanceText(const RegressionStats& statistics, std::int32_t variable, std::int32_t measure,
                             const std::vector<Measured>& factors) {
  if (!statistics.hasTest(measure)) return "";
  std::vector<std::string> above;
  bool anyBelow = false;
  for (const Measured& factor : factors) {
    anyBelow = anyBelow || factor.value < 0.0;
    const auto flag = measureValue(statistics, statistics.records[factor.record], variable,
                                   static_cast<std::size_t>(RegressionStats::kFlagSlots + measure));
    if (flag && *flag == 1.0) above.push_back(factor.name);
  }
  const double byChance = (1.0 - static_cast<double>(statistics.alpha)) * static_cast<double>(factors.size());
  std::string text = above.empty()
                         ? fmt::format("No coefficient is significantly above 0 at {}", cell(statistics.alpha))
                         : fmt::format("Marked as significantly above 0 at {}, each by itself: {}",
                                       cell(statistics.alpha), listed(above, kToldNames));
  if (anyBelow) text += "; the test is one-sided and never flags a negative coefficient";
  if (byChance >= 1.0)
    text += fmt::format("; of {} factors without any effect about {:.0f} would be flagged by chance", factors.size(),
                        byChance);
  return text + ". ";
}

// Neighbours among the first whose order the runs don't settle.
std::string tiesText(const std::vector<Measured>& factors, std::size_t told, double error) {
  std::string text;
  for (std::size_t i = 0; i + 1 < factors.size() && i < told; ++i)
    if (std::abs(factors[i].value) - std::abs(factors[i + 1].value) < kTwoErrors * std::sqrt(2.0) * error)
      text += fmt::format("{}{} and {}", text.empty() ? "" : ", ", factors[i].name, factors[i + 1].name);
  return text.empty() ? "" : "Too close for their order to be settled by these runs: " + text + ". ";
}

std::string fitText(const std::string& name, double raw, double ranks) {
  std::string text = fmt::format(
      "The regression on ranks accounts for {} of the variance of the ranks of {}, that on values for {} of its "
      "variance (R squared, adjusted). ",
      shareText(std::max(0.0, ranks)), name, shareText(std::max(0.0, raw)));
  if (ranks < kFairFit)
    text +=
        "That is little: effects that are not monotone, interactions and noise make up the rest, and a factor with a "
        "small coefficient may matter. ";
  return text;
}

}  // namespace

MeasureSummary summariseRegression(const SensitivityStats& statistics, std::int32_t variable,
                                   const MeasureContext& context) {
  const auto& regression = static_cast<const RegressionStats&>(statistics);
  const RegressionStats::Measure measure = leadingMeasure(regression, variable);
  const std::vector<Measured> factors = measuredFactors(statistics, variable, static_cast<std::size_t>(measure));
  const std::string& name = context.variable;
  if (factors.empty()) return {"No measure of " + name + " is a number.", "", ""};
  const double freedom = context.runs - static_cast<double>(factors.size()) - 1.0;
  double raw = 0.0, ranks = 0.0;
  const bool hasFit = regression.determinationAdjusted(variable, raw, ranks);
  const bool isRegression = measure == RegressionStats::kSrrc && hasFit && std::isfinite(ranks) && freedom >= 1.0;
  // Of a coefficient of uncorrelated factors; of a correlation near 0.
  const double error = isRegression ? std::sqrt(std::max(0.0, 1.0 - ranks) / freedom)
                                    : 1.0 / std::sqrt(std::max(1.0, context.runs - 1.0));

  MeasureSummary summary;
  const bool standsOut = std::abs(factors.front().value) > kTwoErrors * error;
  std::vector<std::string> told;
  for (const Measured& factor : factors)
    if (told.size() < kToldFactors && (!standsOut || std::abs(factor.value) > kTwoErrors * error))
      told.push_back(fmt::format("{} ({:+.2f})", factor.name, factor.value));
  const std::string by = measurePhrase(measure);
  summary.leads = standsOut
                      ? fmt::format("By {} {} follows {} most; with a plus it rises with the factor.", by, name,
                                    listed(told, kToldFactors))
                      : fmt::format("By {} no factor stands out; the largest are {}.", by, listed(told, kToldFactors));
  if (isRegression) summary.trust = fitText(name, raw, ranks);
  // The flags of SRRC compare coefficients of ranks with residuals of values: a reader of this couldn't make sense of
  // them.
  summary.trust += isRegression ? fmt::format("Coefficients beyond {:.2f} lie more than two standard errors from 0. ",
                                              kTwoErrors * error)
                                : significanceText(regression, variable, measure, factors);
  if (standsOut) summary.trust += tiesText(factors, told.size(), error);
  if (context.correlated)
    summary.trust += "The factors are correlated: a coefficient also carries what the factor shares with others. ";
  if (isRegression && ranks >= kFairFit && standsOut)
    summary.next = fmt::format("To know {} better, learn more about {} first.", name, factors.front().name);
  else
    summary.next = fmt::format(
        "Look at the scattergrams of {}; a design for shares of the variance (FAST, Sobol) also sees effects that are "
        "not monotone, and interactions.",
        name);
  return summary;
}

}  // namespace tarvex
