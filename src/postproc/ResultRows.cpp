#include "postproc/ResultRows.h"

#include "base/NumberText.h"
#include "postproc/MeasureSlots.h"
#include "postproc/Quantiles.h"
#include "postproc/RegressionStats.h"
#include "postproc/VelsConfiguration.h"

namespace tarvex {

namespace {

using Take = std::function<void(const ResultRow&)>;

void takeHistogram(std::string_view block, std::int32_t variable, const Histogram& bins, const Take& take) {
  for (std::size_t k = 0; k < bins.size(); ++k) {
    take({block, variable, std::to_string(k), "left edge", bins[k].left});
    take({block, variable, std::to_string(k), "runs", bins[k].count});
  }
}

void takeUncertainty(const UaStats& statistics, std::int32_t v, const Take& take) {
  // A file may lack a statistic, and the t table a level (-1).
  const auto one = [&](const char* quantity, double value, bool known = true) {
    known = known && value != UaStats::kUnavailable;
    take({"uncertainty", v, "", quantity, known ? std::optional<double>(value) : std::nullopt});
  };
  const double s = statistics.std(v);
  one("runs", statistics.sampleSize());
  one("mean", statistics.mean(v));
  one("variance", s * s, s != UaStats::kUnavailable);
  one("standard deviation", s);
  one("skewness", statistics.skewness(v));
  one("kurtosis", statistics.kurtosis(v));
  one("minimum", statistics.minimum(v));
  one("maximum", statistics.maximum(v));
  one("confidence", statistics.tchebyConfidence);
  one("Tchebycheff bound", statistics.tchebyBound(v));
  one("t-test bound", statistics.tTestBound(v), statistics.tTestBound(v) >= 0.0);
  if (statistics.hasHistogram(v, kLinearScale))
    takeHistogram("linear histogram", v, *statistics.linearHistogram(v), take);
  if (statistics.hasHistogram(v, kLogScale))
    takeHistogram("logarithmic histogram", v, *statistics.logHistogram(v), take);
}

void takeEstimate(std::string_view block, std::int32_t v, const std::string& item, const Estimate& estimate,
                  const Take& take) {
  take({block, v, item, "value", estimate.value});
  take({block, v, item, "lower", estimate.lower});
  take({block, v, item, "upper", estimate.upper});
}

// Items are shares in percent, and values that are exceeded.
void takeQuantiles(const QuantileTable& quantiles, std::int32_t v, const Take& take) {
  constexpr double kPercent = 100.0;
  constexpr int kDigits = 10;
  const QuantileRequest& request = quantiles.request;
  const VariableQuantiles& found = quantiles.variables[static_cast<std::size_t>(v)];
  take({"quantiles", v, "", "runs", static_cast<double>(found.runs)});
  take({"quantiles", v, "", "confidence", request.confidence});
  for (std::size_t i = 0; i < request.shares.size(); ++i)
    takeEstimate("quantiles", v, numberText(request.shares[i] * kPercent, kDigits), found.quantiles[i], take);
  for (std::size_t i = 0; i < request.thresholds.size(); ++i)
    takeEstimate("exceedance", v, numberText(request.thresholds[i], kDigits), found.exceedances[i], take);
}

void takeDetermination(const RegressionStats& statistics, std::int32_t v, const Take& take) {
  const auto one = [&](const char* quantity, std::int32_t measure, double value) {
    const std::string reason = statistics.notComputedReason(v, measure);
    if (reason.empty())
      take({"determination", v, "", quantity, value});
    else
      take({"determination", v, "", quantity, std::nullopt, reason});
  };
  double raw = 0.0;
  double ranks = 0.0;
  if (statistics.determination(v, raw, ranks)) {
    one("R squared on raw data", RegressionStats::kPear, raw);
    one("R squared on ranks", RegressionStats::kSpea, ranks);
  }
  if (statistics.determinationAdjusted(v, raw, ranks)) {
    one("adjusted R squared on raw data", RegressionStats::kPear, raw);
    one("adjusted R squared on ranks", RegressionStats::kSpea, ranks);
  }
  take({"determination", v, "", "confidence", statistics.alpha});
}

void takeMeasures(const SensitivityStats& statistics, std::int32_t v, const Take& take) {
  if (const auto* regression = dynamic_cast<const RegressionStats*>(&statistics))
    takeDetermination(*regression, v, take);
  for (const IndexRecord& record : statistics.records) {
    take({"measures", v, record.name, "kind", static_cast<double>(record.kind)});
    for (const MeasureSlot& slot : measureSlots(statistics, record)) {
      ResultRow row{"measures", v, record.name, slot.name, measureValue(statistics, record, v, slot.slot)};
      if (record.kind == FactorKind::Uncertain)
        row.remark = statistics.notComputedReason(v, static_cast<std::int32_t>(slot.slot));
      take(row);
    }
  }
}

}  // namespace

void forEachResult(const VelsConfiguration& vels, const QuantileTable& quantiles, const Take& take) {
  const auto variables = static_cast<std::int32_t>(vels.selectedVariables().size());
  for (std::int32_t v = 0; v < variables; ++v) {
    if (v < vels.uncertainty.variableCount()) takeUncertainty(vels.uncertainty, v, take);
    if (static_cast<std::size_t>(v) < quantiles.variables.size()) takeQuantiles(quantiles, v, take);
    if (vels.sensitivity && vels.sensitivity->computed && v < vels.sensitivity->variableCount)
      takeMeasures(*vels.sensitivity, v, take);
  }
}

}  // namespace tarvex
