#include "postproc/TimeBands.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

#include "base/NumberText.h"
#include "base/WorkPace.h"
#include "model/ModelConfiguration.h"
#include "postproc/OutputReference.h"
#include "postproc/Quantiles.h"

namespace tarvex {

namespace {

// Values in memory at once: 64 MB. More times are read in several passes.
constexpr std::size_t kValuesAtOnce = std::size_t{1} << 23U;
constexpr std::size_t kTimesAtOnce = 100000;  // before those that are alike go
constexpr std::int64_t kOperationsATimeValue = 5;
constexpr double kTimesReadingShare = 0.6;  // of the time, roughly

std::vector<double> evenlyChosen(const std::vector<double>& times) {
  if (times.size() <= kMostBandTimes) return times;
  std::vector<double> chosen;
  for (std::size_t i = 0; i < kMostBandTimes; ++i)
    chosen.push_back(times[i * (times.size() - 1) / (kMostBandTimes - 1)]);
  return chosen;
}

// The values of all runs at some of the times.
class TimeColumns {
 public:
  TimeColumns(const ModelConfiguration& model, const std::vector<std::string>& outputNames)
      : model_(model), outputNames_(outputNames) {}

  bool read(const std::string& output, const double* times, std::size_t count, std::string& message,
            const Progress& progress) {
    std::vector<OutputReference> references(count);
    for (std::size_t i = 0; i < count; ++i) {
      std::size_t position = 0;
      // The name is one of these, and the bracket holds a number.
      static_cast<void>(OutputReference::parse(timeName(output, times[i]), outputNames_, position, references[i]));
    }
    const std::int32_t runs = model_.results.runCount();
    columns.assign(count, {});
    for (std::vector<double>& column : columns) column.reserve(static_cast<std::size_t>(runs));
    WorkPace pace(
        progress, runs,
        kOperationsATimeValue * static_cast<std::int64_t>(count + 1) * (1 + std::int64_t{model_.results.timeCount(0)}));
    for (std::int32_t run = 0; run < runs; ++run) {
      if (!pace.step()) {
        message = "The computation was stopped.";
        return false;
      }
      if (!model_.results.readRun(run, values_) || values_.empty()) {
        message = "The model results of run " + std::to_string(run + 1) + " can't be read.";
        return false;
      }
      for (std::size_t i = 0; i < count; ++i) columns[i].push_back(references[i].value(model_, run, values_));
    }
    return true;
  }

  std::vector<std::vector<double>> columns;  // a time each

 private:
  const ModelConfiguration& model_;
  const std::vector<std::string>& outputNames_;
  std::vector<double> values_;  // scratch: one run
};

void addTime(std::vector<double>&& column, TimeBands& bands) {
  bands.means.push_back(std::accumulate(column.begin(), column.end(), 0.0) / static_cast<double>(column.size()));
  const OrderedRuns ordered(std::move(column));
  bands.missing = std::max(bands.missing, ordered.missing());
  for (std::size_t i = 0; i < kBandShares.size(); ++i)
    bands.quantiles[i].push_back(ordered.quantile(kBandShares[i], kUsualConfidence).value);
}

}  // namespace

std::vector<double> resultTimes(const ModelResults& results) {
  std::vector<double> times;
  std::size_t room = kTimesAtOnce;
  const std::int32_t grids =
      results.timeMode() == kDifferentGrids ? results.runCount() : std::min(results.runCount(), 1);
  for (std::int32_t run = 0; run < grids; ++run) {
    times.insert(times.end(), results.times(run).begin(), results.times(run).end());
    if (times.size() < room && run + 1 < grids) continue;
    std::erase_if(times, [](double time) { return !std::isfinite(time); });
    std::ranges::sort(times);
    times.erase(std::unique(times.begin(), times.end()), times.end());
    room = times.size() + kTimesAtOnce;
  }
  return times;
}

bool computeTimeBands(const ModelConfiguration& model, const std::vector<std::string>& outputNames,
                      const std::string& output, TimeBands& bands, std::string& message, const Progress& progress) {
  if (std::ranges::find(outputNames, output) == outputNames.end()) {
    message = "There is no output " + output + ".";
    return false;
  }
  if (!model.results.hasTimeAxis() || model.results.runCount() == 0) {
    message = "The results have no time axis.";
    return false;
  }
  TimeBands made;
  made.output = output;
  made.runs = model.results.runCount();
  made.times = resultTimes(model.results);
  const auto alike = [](double a, double b) { return numberText(a) == numberText(b); };
  made.times.erase(std::unique(made.times.begin(), made.times.end(), alike), made.times.end());
  made.storedTimes = made.times.size();
  made.times = evenlyChosen(made.times);
  TimeColumns columns(model, outputNames);
  const std::size_t all = made.times.size();
  const std::size_t most = std::max<std::size_t>(kValuesAtOnce / static_cast<std::size_t>(made.runs), 1);
  for (std::size_t first = 0; first < all; first += most) {
    const std::size_t count = std::min(most, all - first);
    const Progress pass = progress.part(static_cast<double>(first) / static_cast<double>(all),
                                        static_cast<double>(first + count) / static_cast<double>(all));
    if (!columns.read(output, made.times.data() + first, count, message, pass.part(0.0, kTimesReadingShare)))
      return false;
    const Progress ordering = pass.part(kTimesReadingShare, 1.0);
    for (std::size_t i = 0; i < count; ++i) {
      if (!ordering.report(i, count)) {
        message = "The computation was stopped.";
        return false;
      }
      addTime(std::move(columns.columns[i]), made);
    }
  }
  bands = std::move(made);
  return true;
}

}  // namespace tarvex
