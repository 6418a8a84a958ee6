#include "parts/PartAttempt.h"

#include <filesystem>
#include <set>

#include "base/Paths.h"
#include "parts/PartSample.h"
#include "parts/RunDirectory.h"
#include "parts/RunRecord.h"
#include "sampling/Sampler.h"

namespace tarvex {

namespace {

namespace fs = std::filesystem;

bool isPlanned(std::int32_t methodId) {
  return methodId == kFast || methodId == kSobol || methodId == kMorris || methodId == kRepLatin;
}

std::string whyNotOutput(const RunRecord& record) {
  const fs::path output(record.outputFile);
  if (output.is_absolute() && record.parts.size() > 1)
    return "The parts would write one file: give the output file without a directory, as " +
           output.filename().string() + ".\nEach part is carried out in a directory of its own.";
  for (const fs::path& step : output)
    if (step == "..") return "The output file must lie in the directory of its part: " + record.outputFile;
  return {};
}

// What the directory of an attempt holds already.
std::string whyNotLinks(const RunRecord& record) {
  std::set<std::string> names = {"sample.sam", "log", "scheduler.log", fs::path(record.outputFile).begin()->string()};
  for (const std::string& link : record.settings.links) {
    const fs::path target = absolutePath(link);
    std::error_code error;
    if (!fs::exists(target, error)) return link + ": there is no such file or directory to link";
    if (target.filename().empty()) return link + ": it has no name to link it under";
    if (!names.insert(target.filename().string()).second)
      return link + ": the name " + target.filename().string() + " is taken in the directory of a part";
  }
  return {};
}

}  // namespace

bool prepareAttempt(const RunRecord& record, const RunDirectory& run, const PartSample& sample, std::int32_t part,
                    std::int32_t attempt, std::string& message) {
  const std::string directory = run.attempt(part, attempt);
  const fs::path output(record.outputFile);
  const bool isPlain = output.is_absolute() || !output.has_parent_path();
  if (!makeDirectories(isPlain ? directory : (fs::path(directory) / output).parent_path().string(), message))
    return false;
  for (const std::string& link : record.settings.links) {
    const fs::path target = absolutePath(link);
    std::error_code error;
    fs::create_symlink(target, fs::path(directory) / target.filename(), error);
    if (!error || error == std::errc::file_exists) continue;
    message = directory + '/' + target.filename().string() + ": " + error.message();
    return false;
  }
  return sample.write(static_cast<std::size_t>(part), directory + "/sample.sam", message);
}

std::string attemptOutput(const RunRecord& record, const RunDirectory& run, std::int32_t part, std::int32_t attempt) {
  return (fs::path(run.attempt(part, attempt)) / record.outputFile).string();
}

std::string whyNotInParts(const RunRecord& record, std::int32_t methodId) {
  if (record.settings.policy == FailurePolicy::Missing && isPlanned(methodId))
    return "The measures of this design need every run: a part that fails can't be left out, use --on-failure retry.";
  if (std::string reason = whyNotOutput(record); !reason.empty()) return reason;
  return whyNotLinks(record);
}

}  // namespace tarvex
