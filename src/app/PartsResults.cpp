#include "app/PartsResults.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "model/ModelResults.h"
#include "parts/PartOutput.h"
#include "parts/RunFollower.h"

namespace tarvex {

namespace {

constexpr double kJoining = 0.7;  // of the time, roughly

// The parts that are done, as if there were no others.
void takeDone(const RunFollower& run, std::vector<Part>& parts, std::vector<std::string>& paths) {
  const std::vector<std::string> all = run.outputs();
  for (std::size_t part = 0; part < all.size(); ++part) {
    if (all[part].empty()) continue;
    const std::int32_t first = parts.empty() ? 0 : parts.back().first + parts.back().rows;
    parts.push_back({first, run.states().parts()[part].rows});
    paths.push_back(all[part]);
  }
}

// Takes in one more value, unless it is missing: UaStats, whose definitions these are, would have nothing but nan then.
// Meanwhile `deviation` is the sum of squares (B. P. Welford, Technometrics 4, 1962).
void takeValue(OutputSoFar& output, double value) {
  if (std::isnan(value)) return;
  ++output.runs;
  const double distance = value - output.mean;
  output.mean += distance / output.runs;
  output.deviation += distance * (value - output.mean);
  output.minimum = output.runs == 1 ? value : std::min(output.minimum, value);
  output.maximum = output.runs == 1 ? value : std::max(output.maximum, value);
}

// `values` is those of all outputs, time after time.
double largest(const std::vector<double>& values, std::size_t output, std::size_t outputs) {
  double most = std::numeric_limits<double>::quiet_NaN();
  for (std::size_t i = output; i < values.size(); i += outputs)
    if (std::isnan(most) || values[i] > most) most = values[i];
  return most;
}

}  // namespace

bool readSoFar(const RunFollower& run, std::vector<OutputSoFar>& outputs, std::int32_t& runs, std::string& message,
               const Progress& progress) {
  std::vector<Part> parts;
  std::vector<std::string> paths;
  takeDone(run, parts, paths);
  if (parts.empty()) {
    message = "No part is done yet.";
    return false;
  }
  ModelResults results;
  std::size_t failed = 0;
  const auto quiet = [](const std::string&, const std::string&) {};  // it is said when the results are taken
  if (!joinParts(parts, paths, quiet, results, failed, message, progress.part(0.0, kJoining))) return false;
  std::vector<OutputSoFar> read(results.outputNames().size());
  for (std::size_t i = 0; i < read.size(); ++i) read[i].name = results.outputNames()[i];
  std::vector<double> values;
  const Progress counting = progress.part(kJoining, 1.0);
  for (std::int32_t row = 0; row < results.runCount(); ++row) {
    if (!results.readRun(row, values)) {
      message = results.errorText();
      return false;
    }
    if (!counting.report(row, results.runCount())) return false;
    for (std::size_t i = 0; i < read.size(); ++i) takeValue(read[i], largest(values, i, read.size()));
  }
  for (OutputSoFar& output : read) {
    output.deviation = std::sqrt(output.deviation / output.runs);
    if (output.runs == 0) output.mean = output.minimum = output.maximum = std::numeric_limits<double>::quiet_NaN();
  }
  outputs = std::move(read);
  runs = results.runCount();
  return true;
}

}  // namespace tarvex
