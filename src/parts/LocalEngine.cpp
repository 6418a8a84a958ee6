#include "parts/LocalEngine.h"

#include <poll.h>

#include <algorithm>
#include <csignal>
#include <cstring>
#include <thread>

#include "base/Cores.h"
#include "parts/PartMark.h"
#include "parts/PartProcesses.h"

namespace tarvex {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds kLocalPace{200};
constexpr milliseconds kStopGrace{700};  // from the request to end to the kill
constexpr milliseconds kStopSlice{10};

}  // namespace

LocalEngine::LocalEngine(RunDirectory run, std::int32_t jobs)
    : run_(std::move(run)), jobs_(jobs > 0 ? static_cast<std::size_t>(jobs) : Cores::count()) {}

LocalEngine::~LocalEngine() {
  std::string message;
  if (!children_.empty()) static_cast<void>(stop({}, message));  // it kills what doesn't end
}

std::size_t LocalEngine::room() const {
  const std::size_t taken = children_.size() + adopted_.size();
  return jobs_ > taken ? jobs_ - taken : 0;
}

Engine::Submission LocalEngine::submit(const std::vector<std::int32_t>& parts, std::int32_t attempt, std::string& id,
                                       std::string& message) {
  for (const std::int32_t part : parts) {
    auto process = std::make_unique<ExternalProcess>();
    const std::string directory = run_.attempt(part, attempt);
    if (!process->start({"/bin/sh",
                         {run_.script(), std::to_string(attempt), std::to_string(part)},
                         directory,
                         directory + "/scheduler.log",
                         -1,
                         {"TARVEX_PART=" + partVariable(run_.path(), part, attempt)}})) {
      message = run_.script() + ": " + std::strerror(process->error());
      return Submission::Refused;
    }
    id = std::to_string(process->number());
    children_.push_back({part, attempt, std::move(process)});
  }
  return Submission::Sent;
}

bool LocalEngine::find(std::int32_t /*attempt*/, std::string& id) {
  id.clear();
  return true;
}

void LocalEngine::adopt(const std::vector<PartJob>& jobs) {
  adopted_ = jobs;
}

// The script is known by what its mark says of it; one that hasn't made its mark yet by its environment.
bool LocalEngine::isAdoptedAlive(const PartJob& job) const {
  PartMark mark{job.part, job.attempt};
  if (readMark(run_, mark)) return mark.boot == bootId() && isProcess(mark.pid, mark.born);
  return std::ranges::any_of(partProcesses(run_.path()), [&job](const PartProcess& process) {
    return process.part == job.part && process.attempt == job.attempt;
  });
}

// A mark may be read before its script has ended: who waits for a place waits for that, too.
void LocalEngine::reap() {
  std::erase_if(children_, [this](const Child& child) {
    if (child.process->poll() == ExternalProcess::State::Running) return false;
    // What a model left behind that was ended for its time, in whatever session it hides. One that ended well may.
    if (child.process->exitCode() != 0) killPartProcesses(run_.path(), child.part, child.attempt);
    return true;
  });
}

bool LocalEngine::findGone(const std::vector<PartJob>& jobs, std::vector<PartJob>& gone) {
  reap();
  std::vector<PartJob> left;
  for (const PartJob& job : adopted_)
    if (isAdoptedAlive(job)) left.push_back(job);
  adopted_ = std::move(left);
  for (const PartJob& job : jobs) {
    const auto isJob = [&job](const auto& other) { return other.part == job.part && other.attempt == job.attempt; };
    if (std::ranges::none_of(children_, isJob) && std::ranges::none_of(adopted_, isJob)) gone.push_back(job);
  }
  return true;
}

bool LocalEngine::stop(const std::vector<PartJob>& jobs, std::string& /*message*/) {
  std::vector<pid_t> groups;
  for (const Child& child : children_) groups.push_back(child.process->number());
  for (const PartJob& job : jobs) {
    PartMark mark{job.part, job.attempt};
    const bool isChild = std::ranges::any_of(children_, [&job](const Child& child) { return child.part == job.part; });
    if (!isChild && readMark(run_, mark) && mark.boot == bootId() && isProcess(mark.pid, mark.born))
      groups.push_back(mark.pid);
  }
  for (const pid_t group : groups) ::kill(-group, SIGTERM);
  for (const pid_t group : groups) ::kill(-group, SIGCONT);  // who is suspended hears when he goes on
  const auto end = steady_clock::now() + kStopGrace;
  while (!partProcesses(run_.path()).empty() && steady_clock::now() < end) std::this_thread::sleep_for(kStopSlice);
  killPartProcesses(run_.path());
  for (const Child& child : children_)
    while (child.process->poll() == ExternalProcess::State::Running) child.process->wait(kStopSlice);
  children_.clear();
  adopted_.clear();
  return true;
}

void LocalEngine::wait(milliseconds time) {
  std::vector<pollfd> ends;
  for (const Child& child : children_) ends.push_back({child.process->watch(), POLLIN, 0});
  // On a system without such descriptors this is a plain sleep.
  ::poll(ends.data(), ends.size(), static_cast<int>(time.count()));
  reap();
}

milliseconds LocalEngine::pace() const {
  return kLocalPace;
}

milliseconds LocalEngine::queryPace() const {
  return adopted_.empty() ? milliseconds{} : kLocalPace;
}

}  // namespace tarvex
