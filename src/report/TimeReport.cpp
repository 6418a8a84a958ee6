#include "report/TimeReport.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "model/ModelConfiguration.h"
#include "postproc/MeasureSlots.h"
#include "postproc/RegressionStats.h"
#include "postproc/VelsConfiguration.h"
#include "report/TextTable.h"

namespace tarvex {

namespace {

constexpr std::size_t kLeading = 3;  // factors that are named

// What is seen of one output on the grid of times that all runs share.
struct OutputOverTime {
  std::vector<double> sums;           // over the runs, a time each
  std::vector<double> timeOfMaximum;  // a run each
};

// The sorted value that the share of all values lies below.
double quantile(const std::vector<double>& sorted, double share) {
  return sorted[static_cast<std::size_t>(share * static_cast<double>(sorted.size() - 1))];
}

bool collect(const ModelConfiguration& model, std::vector<OutputOverTime>& outputs) {
  const auto times = static_cast<std::size_t>(model.results.timeCount(0));
  outputs.assign(static_cast<std::size_t>(model.results.outputCount()), {std::vector<double>(times, 0.0), {}});
  std::vector<double> values;
  for (std::int32_t run = 0; run < model.results.runCount(); ++run) {
    if (!model.results.readRun(run, values)) return false;
    for (std::size_t output = 0; output < outputs.size(); ++output) {
      std::size_t largest = 0;
      const auto at = [&](std::size_t time) { return values[time * outputs.size() + output]; };
      for (std::size_t time = 0; time < times; ++time) {
        outputs[output].sums[time] += at(time);
        if (at(time) > at(largest)) largest = time;
      }
      outputs[output].timeOfMaximum.push_back(model.results.time(run, static_cast<std::int32_t>(largest)));
    }
  }
  return true;
}

// "W -0.93, v1 0.91": the factors of the first ranks by a measure of a variable.
std::string leadingText(const RegressionStats& statistics, std::int32_t variable, std::int32_t measure) {
  std::string text;
  for (const std::size_t i : strongestRecords(statistics, variable, measure, kLeading)) {
    const IndexRecord& record = statistics.records[i];
    const auto value = measureValue(statistics, record, variable, static_cast<std::size_t>(measure));
    text += fmt::format("{}{} {:+.2f}", text.empty() ? "" : ", ", record.name, value.value_or(0.0));
  }
  return text;
}

}  // namespace

void reportTimesOfMaxima(std::ostream& out, const ModelConfiguration& model, const VelsConfiguration& vels) {
  std::vector<OutputOverTime> outputs;
  if (model.results.timeMode() != kSharedGrid || !collect(model, outputs)) return;
  TextTable table;
  table.addColumn("output", TextTable::Align::Left);
  for (const char* heading : {"5 % of the runs", "median", "95 %", "mean", "its size"}) table.addColumn(heading);
  const std::vector<std::string> names = vels.outputNames(model);
  for (std::size_t k = 0; k < outputs.size(); ++k) {
    OutputOverTime& seen = outputs[k];
    const auto largest = std::ranges::max_element(seen.sums);
    std::ranges::sort(seen.timeOfMaximum);
    table.addRow({names[k], cell(quantile(seen.timeOfMaximum, 0.05)), cell(quantile(seen.timeOfMaximum, 0.5)),
                  cell(quantile(seen.timeOfMaximum, 0.95)),
                  cell(model.results.time(0, static_cast<std::int32_t>(largest - seen.sums.begin()))),
                  cell(*largest / model.results.runCount())});
  }
  out << "The times at which each output is largest: in the single runs, and in their mean\n";
  table.print(out);
}

void reportLeadingFactors(std::ostream& out, const VelsConfiguration& vels) {
  const auto* statistics = dynamic_cast<const RegressionStats*>(vels.sensitivity.get());
  if (statistics == nullptr) return;
  static constexpr RegressionStats::Measure kRankMeasures[] = {RegressionStats::kSpea, RegressionStats::kPrcc,
                                                               RegressionStats::kSrrc};
  TextTable table;
  table.addColumn("variable", TextTable::Align::Left);
  for (const auto measure : kRankMeasures)
    table.addColumn(std::string(RegressionStats::measureName(measure)), TextTable::Align::Left);
  std::int32_t variable = 0;
  for (const std::string& name : vels.selectedVariables()) {
    std::vector<std::string> row{name};
    for (const auto measure : kRankMeasures) row.push_back(leadingText(*statistics, variable, measure));
    table.addRow(row);
    ++variable;
  }
  out << "Leading factors by rank measures\n";
  table.print(out);
}

}  // namespace tarvex
