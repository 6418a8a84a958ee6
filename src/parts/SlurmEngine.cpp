#include "parts/SlurmEngine.h"

#include <algorithm>
#include <limits>
#include <set>
#include <sstream>
#include <thread>
#include <utility>

#include "parts/CommandOutput.h"
#include "parts/RunRecord.h"

namespace tarvex {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kSubmitTime{60000};
constexpr milliseconds kQueryTime{20000};
constexpr milliseconds kCancelTime{900};  // who stops a run is to be through within two seconds
constexpr milliseconds kSlurmPace{1000};
constexpr milliseconds kWaitSlice{50};
constexpr std::int32_t kMinute = 60;
constexpr std::int32_t kMargin = 30;  // seconds of a task besides the model's

std::string joined(const std::set<std::string>& words) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : ",") + word;
  return text;
}

std::set<std::string> numbersOf(const std::vector<PartJob>& jobs) {
  std::set<std::string> numbers;
  for (const PartJob& job : jobs)
    if (!job.id.empty()) numbers.insert(job.id);
  return numbers;
}

// A path in which no sign of a file name pattern counts.
std::string plainPattern(const std::string& path) {
  std::string pattern;
  for (const char c : path) pattern += c == '%' ? "%%" : std::string(1, c);
  return pattern;
}

}  // namespace

SlurmEngine::SlurmEngine(const RunRecord& record, RunDirectory run, const SiteSettings& site,
                         std::function<bool()> goOn)
    : run_(std::move(run)),
      id_(record.id),
      jobs_(record.settings.jobs),
      timeLimit_(record.settings.timeLimit),
      memory_(record.settings.memory),
      options_(record.settings.engineOptions),
      site_(site),
      goOn_(std::move(goOn)) {}

std::size_t SlurmEngine::room() const {
  return std::numeric_limits<std::size_t>::max();  // the cluster has a queue
}

std::string SlurmEngine::arrayText(const std::vector<std::int32_t>& parts) {
  std::string text;
  for (std::size_t i = 0; i < parts.size();) {
    std::size_t last = i;
    while (last + 1 < parts.size() && parts[last + 1] == parts[last] + 1) ++last;
    text += (text.empty() ? "" : ",") + std::to_string(parts[i]);
    if (last > i) text += '-' + std::to_string(parts[last]);
    i = last + 1;
  }
  return text;
}

std::string SlurmEngine::jobName(std::int32_t attempt) const {
  return "tarvex-" + id_ + '-' + std::to_string(attempt);
}

std::vector<std::string> SlurmEngine::submission(const std::vector<std::int32_t>& parts, std::int32_t attempt) const {
  std::string array = "--array=" + arrayText(parts);
  if (jobs_ > 0) array += '%' + std::to_string(jobs_);
  std::vector<std::string> words = {
      "sbatch",
      "--parsable",
      "--no-requeue",
      "--job-name=" + jobName(attempt),
      array,
      "--output=" + plainPattern(run_.parts()) + "/%4a/" + std::to_string(attempt) + "/scheduler.log",
      "--chdir=" + run_.path()};
  if (timeLimit_ > 0) words.push_back("--time=" + std::to_string((timeLimit_ + kMargin + kMinute - 1) / kMinute));
  if (memory_ > 0) words.push_back("--mem=" + std::to_string(memory_));
  words.insert(words.end(), options_.begin(), options_.end());
  words.push_back(run_.script());
  words.push_back(std::to_string(attempt));
  return words;
}

Engine::Submission SlurmEngine::submit(const std::vector<std::int32_t>& parts, std::int32_t attempt, std::string& id,
                                       std::string& message) {
  CommandOutput output;
  const bool answered = runCommand(submission(parts, attempt), kSubmitTime, goOn_, output);
  // Warnings of the site may stand before the number, and its cluster's name behind it.
  const std::string line = output.text.substr(output.text.rfind('\n') + 1);
  id = line.substr(0, line.find(';'));
  const bool isNumber = !id.empty() && std::ranges::all_of(id, [](char c) { return c >= '0' && c <= '9'; });
  if (answered && output.code == 0 && isNumber) return Submission::Sent;
  id.clear();
  message = "The cluster doesn't take the run.\n" + output.text;
  // One that can't be started has sent nothing, nor has one that says no.
  return answered || !output.started ? Submission::Refused : Submission::Unknown;
}

bool SlurmEngine::find(std::int32_t attempt, std::string& id) {
  CommandOutput output;
  if (!runCommand({"squeue", "-h", "-n", jobName(attempt), "-o", "%F"}, kQueryTime, goOn_, output) || output.code != 0)
    return false;
  id = output.text.substr(0, output.text.find('\n'));
  return true;
}

bool SlurmEngine::findGone(const std::vector<PartJob>& jobs, std::vector<PartJob>& gone) {
  const std::set<std::string> numbers = numbersOf(jobs);
  CommandOutput output;
  std::set<std::pair<std::string, std::int32_t>> alive;
  if (!numbers.empty()) {
    const bool answered =
        runCommand({"squeue", "-h", "-r", "-j", joined(numbers), "-o", "%F %K"}, kQueryTime, goOn_, output);
    const bool forgotten = numbers.size() == 1 && output.text.find("Invalid job id") != std::string::npos;
    if (!answered || (output.code != 0 && !forgotten)) return false;
    std::istringstream lines(forgotten ? "" : output.text);
    std::string number;
    std::int32_t part = 0;
    while (lines >> number >> part) alive.emplace(number, part);
  }
  for (const PartJob& job : jobs)
    if (!alive.contains({job.id, job.part})) gone.push_back(job);
  return true;
}

bool SlurmEngine::stop(const std::vector<PartJob>& jobs, std::string& message) {
  const std::set<std::string> numbers = numbersOf(jobs);
  if (numbers.empty()) return true;
  std::vector<std::string> words = {"scancel"};
  words.insert(words.end(), numbers.begin(), numbers.end());
  CommandOutput output;
  const bool answered = runCommand(
      words, kCancelTime, [] { return true; }, output);
  if (answered && (output.code == 0 || output.text.find("Invalid job id") != std::string::npos)) return true;
  message = "The cluster could not be told to end the jobs " + joined(numbers) + ": " + output.text;
  return false;
}

void SlurmEngine::wait(milliseconds time) {
  const auto end = std::chrono::steady_clock::now() + time;
  while (std::chrono::steady_clock::now() < end && goOn_()) std::this_thread::sleep_for(kWaitSlice);
}

milliseconds SlurmEngine::pace() const {
  return kSlurmPace;
}

}  // namespace tarvex
