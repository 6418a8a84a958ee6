#include <fmt/format.h>

#include <algorithm>
#include <functional>

#include "postproc/FastStats.h"
#include "postproc/MeasureSlots.h"
#include "postproc/SobolStats.h"
#include "report/MeasureSummary.h"

namespace tarvex {

namespace {

constexpr double kSmallShare = 0.05;  // of the variance: less is no ground to tell factors apart by
constexpr double kIdleTotal = 0.01;   // a total of this or less: as good as without effect
constexpr std::size_t kFirst = 0;     // slots
constexpr std::size_t kTotal = 1;

bool hasTotals(const SensitivityStats& statistics) {
  if (const auto* const fast = dynamic_cast<const FastStats*>(&statistics)) return fast->hasTotals();
  return statistics.typeId() == SensitivityStats::kSobol;
}

// First and total order of the uncertain factors, as one looks at them together.
struct Shares {
  std::vector<Measured> first;   // largest first
  std::vector<Measured> totals;  // the same; empty without them
  double sum = 0.0;              // of the first orders
  double error = 0.0;            // at least that much the estimates are off: below 0, above their totals, above 1
};

Shares sharesOf(const SensitivityStats& statistics, std::int32_t variable) {
  Shares shares;
  shares.first = measuredFactors(statistics, variable, kFirst);
  if (hasTotals(statistics)) shares.totals = measuredFactors(statistics, variable, kTotal);
  for (const Measured& factor : shares.first) {
    shares.sum += factor.value;
    shares.error = std::max(shares.error, -factor.value);
    for (const Measured& total : shares.totals)
      if (total.record == factor.record) shares.error = std::max(shares.error, factor.value - total.value);
  }
  for (const Measured& total : shares.totals) shares.error = std::max(shares.error, -total.value);
  for (std::vector<Measured>* const list : {&shares.first, &shares.totals})
    std::ranges::stable_sort(*list, std::ranges::greater(), &Measured::value);
  return shares;
}

std::string sumText(const Shares& shares, const MeasureContext& context) {
  if (context.correlated)
    return fmt::format(
        "The factors are correlated: what each explains overlaps with others, and their sum ({}) says nothing of "
        "interactions. ",
        shareText(shares.sum));
  if (shares.sum > 1.0 + kSmallShare)
    return fmt::format("The shares of the factors alone add up to {}, more than there is: they are overestimated. ",
                       shareText(shares.sum));
  if (shares.sum > 1.0 - kSmallShare)
    return fmt::format("Together the factors alone explain {}: within the errors nothing is left to interactions. ",
                       shareText(shares.sum));
  return fmt::format(
      "Together the factors alone explain {}; the other {} are interactions, and what the estimates miss. ",
      shareText(shares.sum), shareText(1.0 - shares.sum));
}

std::string strongestTerm(const SensitivityStats& statistics, std::int32_t variable) {
  for (const std::size_t i : strongestRecords(statistics, variable, kFirst, statistics.records.size())) {
    const IndexRecord& record = statistics.records[i];
    const double value = measureValue(statistics, record, variable, kFirst).value_or(0.0);
    if (record.groupNames.size() > 1 && value > kSmallShare)
      return fmt::format("The largest interaction is that of {}: {}. ",
                         listed(record.groupNames, record.groupNames.size()), shareText(value));
  }
  return "";
}

std::string closeText(const std::vector<Measured>& factors, double error) {
  std::string text;
  const double apart = std::max(kSmallShare, 2.0 * error);
  for (std::size_t i = 0; i + 1 < factors.size() && i < kToldFactors; ++i)
    if (factors[i].value > apart && factors[i].value - factors[i + 1].value < apart)
      text += fmt::format("{}{} and {}", text.empty() ? "" : ", ", factors[i].name, factors[i + 1].name);
  return text.empty() ? "" : fmt::format("Nearly equal, less than {:.2f} apart: {}. ", apart, text);
}

std::string leadsText(const Shares& shares, const std::string& name) {
  std::vector<std::string> alone, all;
  for (const Measured& factor : shares.first)
    if (alone.size() < kToldFactors && factor.value > 0.0) alone.push_back(factor.name + ' ' + shareText(factor.value));
  for (const Measured& factor : shares.totals)
    if (all.size() < kToldFactors && factor.value > 0.0) all.push_back(factor.name + ' ' + shareText(factor.value));
  std::string text = alone.empty() ? "No factor alone explains any of the variance of " + name
                                   : fmt::format("Of the variance of {} the factors alone explain: {}", name,
                                                 listed(alone, kToldFactors));
  if (!all.empty()) text += "; with all their interactions: " + listed(all, kToldFactors);
  return text + '.';
}

std::string nextText(const Shares& shares, const std::string& name, const MeasureContext& context) {
  std::string text;
  const Measured& lead = shares.first.front();
  if (lead.value > std::max(kSmallShare, shares.error) && lead.value <= 1.0 && !context.correlated)
    text = fmt::format("Were {} known, the variance of {} would be expected to fall by about {}. ", lead.name, name,
                       shareText(lead.value));
  if (shares.totals.empty()) return text + "Which factors may be fixed, only total orders tell (extended FAST, Sobol).";
  std::vector<std::string> idle;
  for (const Measured& total : shares.totals)
    if (total.value <= kIdleTotal && shares.error < kSmallShare) idle.push_back(total.name);
  if (!idle.empty())
    text += fmt::format("As far as these estimates tell {} can be fixed: {} of at most {:.0f} %.",
                        listed(idle, kToldNames), idle.size() == 1 ? "a total" : "totals", 100.0 * kIdleTotal);
  return text;
}

}  // namespace

MeasureSummary summariseShares(const SensitivityStats& statistics, std::int32_t variable,
                               const MeasureContext& context) {
  const Shares shares = sharesOf(statistics, variable);
  if (shares.first.empty()) return {"No share of the variance of " + context.variable + " is a number.", "", ""};
  MeasureSummary summary{leadsText(shares, context.variable), sumText(shares, context),
                         nextText(shares, context.variable, context)};
  if (!context.correlated) summary.trust += strongestTerm(statistics, variable);
  if (shares.error >= kIdleTotal)
    summary.trust += fmt::format(
        "Estimates below 0, or of first order above their totals, show errors of at least {:.2f}. ", shares.error);
  summary.trust += closeText(shares.first, shares.error);
  return summary;
}

}  // namespace tarvex
