#include "parts/PartOutput.h"

#include "model/ModelOutputReader.h"
#include "model/ModelResults.h"

namespace tarvex {

namespace {

std::string wrongRuns(const std::string& path, std::int32_t found, std::int32_t wanted) {
  return path + ": it has " + std::to_string(found) + " runs, its part of the sample has " + std::to_string(wanted);
}

}  // namespace

bool PartOutput::check(const std::string& path, const Part& part, std::string& message) {
  ModelResults results;
  ModelOutputReader reader(results, [](const auto&, const auto&) {});
  if (!reader.read(path)) {
    message = reader.errorText();
    return false;
  }
  if (results.runCount() != part.rows) {
    message = wrongRuns(path, results.runCount(), part.rows);
    return false;
  }
  if (!names_.empty() && (results.outputNames() != names_ || results.hasTimeAxis() != hasTimes_)) {
    message = path + ": its outputs, or its times, are not those of the other parts";
    return false;
  }
  names_ = results.outputNames();
  hasTimes_ = results.hasTimeAxis();
  return true;
}

bool joinParts(const std::vector<Part>& parts, const std::vector<std::string>& paths, const Warn& warn,
               ModelResults& results, std::size_t& failed, std::string& message, const Progress& progress) {
  results.clear();
  ModelOutputReader reader(results, warn);
  for (failed = 0; failed < parts.size(); ++failed) {
    if (!progress.report(failed, parts.size())) break;
    if (paths[failed].empty()) continue;
    const Part& part = parts[failed];
    if (!reader.read(paths[failed], part.first)) {
      message = reader.errorText();
      results.clear();
      return false;
    }
    if (results.runCount() != part.first + part.rows) {
      message = wrongRuns(paths[failed], results.runCount() - part.first, part.rows);
      results.clear();
      return false;
    }
  }
  const std::int32_t rows = parts.back().first + parts.back().rows;
  if (failed < parts.size() || results.runCount() == 0) {
    message = failed < parts.size() ? kStoppedText : "Not one part of the run has results.";
    failed = parts.size();
    results.clear();
    return false;
  }
  if (results.runCount() == rows) return true;
  const std::vector<double> times = results.times(results.runCount() - 1);
  if (results.appendMissing(rows - results.runCount(), times)) return true;
  message = notStored(results);
  results.clear();
  return false;
}

}  // namespace tarvex
