#include "sampling/SampleSelection.h"

#include <iterator>
#include <memory>
#include <utility>

#include "base/WorkPace.h"
#include "sampling/FixedSampler.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/RandomSampler.h"
#include "sampling/SampleFiles.h"

namespace tarvex {

namespace {

// Where the rows, and the statistics, are there: of the time, roughly.
constexpr double kRowsShare = 0.2;
constexpr double kSelectedShare = 0.4;

// Hands the rows of `runs` to `take`, one at a time. False, with the reason, where one can't be read or taken, and
// after a stop.
template <class Take>
bool forRuns(const sampValues& samples, const std::vector<std::int32_t>& runs, const Progress& progress,
             std::string& message, Take take) {
  std::vector<double> row(static_cast<std::size_t>(samples.columns()));
  WorkPace pace(progress, std::ssize(runs), samples.columns());
  for (const std::int32_t run : runs) {
    if (!pace.step()) {
      message = kStoppedText;
      return false;
    }
    if (!samples.getRow(run, row.data())) {
      message = "Run " + std::to_string(run + 1) + " can't be read: " + samples.errorText();
      return false;
    }
    if (!take(row)) return false;
  }
  return true;
}

// The typed table of a fixed sample, the kept rows of it.
std::unique_ptr<Sampler> selectedFixed(const FixedSampler& whole, const sampValues& samples,
                                       const std::vector<std::int32_t>& runs, const Progress& progress,
                                       std::string& message) {
  auto kept = std::make_unique<FixedSampler>();
  kept->setNumFactors(samples.columns());
  const bool taken = forRuns(samples, runs, progress, message, [&](const std::vector<double>& row) {
    if (kept->addRow(row)) return true;
    message = kept->errorText;
    return false;
  });
  if (!taken || !kept->setOrder(whole.values().order())) return nullptr;
  return kept;
}

// The method of the selection; null, with the reason, on failure.
std::unique_ptr<Sampler> selectedSampler(const PrepConfiguration& prep, const std::vector<std::int32_t>& runs,
                                         const Progress& progress, std::string& message) {
  std::unique_ptr<Sampler> kept;
  switch (prep.sampler->methodId) {
    case kFixed:
      kept = selectedFixed(static_cast<const FixedSampler&>(*prep.sampler), prep.samples, runs, progress, message);
      if (!kept) return nullptr;
      break;
    case kLatin:
    case kLpTau:
    case kRandom:
      kept = prep.sampler->clone(message);
      if (!kept) return nullptr;
      break;
    default:
      kept = std::make_unique<RandomSampler>();
      kept->setNumFactors(prep.factors.factorCount());
  }
  kept->numSamples = static_cast<std::int32_t>(runs.size());
  return kept;
}

}  // namespace

bool selectRuns(const PrepConfiguration& prep, const std::vector<std::int32_t>& runs, PrepConfiguration& selection,
                std::string& message, const Progress& progress) {
  PrepConfiguration made;
  const bool allocated = prep.samples.columns() == 0 || made.samples.allocate(prep.samples.columns());
  if (!allocated || !made.samples.setOrder(prep.samples.order())) {
    message = made.samples.errorText();
    return false;
  }
  const bool taken =
      forRuns(prep.samples, runs, progress.part(0.0, kRowsShare), message, [&](const std::vector<double>& row) {
        if (made.samples.addRow(row.data()) > 0) return true;
        message = made.samples.errorText();
        return false;
      });
  if (!taken) return false;
  if (prep.sampler) {
    made.sampler = selectedSampler(prep, runs, progress.part(kRowsShare, kSelectedShare), message);
    if (!made.sampler) return false;
  }
  if (!made.factors.copyFrom(prep.factors, message)) return false;
  made.external = prep.external;
  made.factorNames = prep.factorNames;
  SampleStatistics statistics;
  if (!statistics.compute(made.samples, progress.part(kSelectedShare, 1.0))) {
    message = progress.stopped() ? kStoppedText : made.samples.errorText();
    return false;
  }
  made.sampleStatistics = std::move(statistics);
  selection = std::move(made);
  return true;
}

bool saveSelection(const std::string& path, const PrepConfiguration& prep, const std::vector<std::int32_t>& runs,
                   std::string& message, const Progress& progress) {
  constexpr double kMadeShare = 0.3;  // of the time, roughly; the file takes the rest
  PrepConfiguration selection;
  std::string problem;
  if (selectRuns(prep, runs, selection, problem, progress.part(0.0, kMadeShare))) {
    selection.sampleFile = path;
    if (writeSampleFile(path, selection, problem, progress.part(kMadeShare, 1.0))) return true;
  }
  message = outputNotWritten(path) + '\n' + problem;
  return false;
}

std::string savedRunsText(std::int32_t total, std::int32_t saved) {
  return "Total samples: " + std::to_string(total) + "\nSaved samples: " + std::to_string(saved);
}

}  // namespace tarvex
