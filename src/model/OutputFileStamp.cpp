#include "model/OutputFileStamp.h"

#include <chrono>
#include <ctime>
#include <thread>

#include "base/Paths.h"

namespace tarvex {

namespace {

constexpr std::chrono::milliseconds kTick{1};
constexpr std::time_t kCoarsest = 2;  // seconds between two times that a file system can tell apart

bool isSame(const timespec& a, const timespec& b) {
  return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

// Whether something written at `now` would bear a later time than `changed`. A time of whole seconds comes from a file
// system that keeps no fractions.
bool isPast(const timespec& changed, const timespec& now) {
  if (changed.tv_nsec == 0) return now.tv_sec >= changed.tv_sec + kCoarsest;
  return now.tv_sec != changed.tv_sec ? now.tv_sec > changed.tv_sec : now.tv_nsec > changed.tv_nsec;
}

}  // namespace

OutputFileStamp::OutputFileStamp(const std::string& path) : path_(path) {
  existed_ = ::stat(existingPath(path).c_str(), &before_) == 0;
  if (!existed_) return;
  // A clock of another machine may be ahead by any time: the wait has an end.
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(kCoarsest);
  timespec now{};
  while (::clock_gettime(CLOCK_REALTIME_COARSE, &now) == 0 && !isPast(before_.st_ctim, now) &&
         std::chrono::steady_clock::now() < end)
    std::this_thread::sleep_for(kTick);
}

std::string OutputFileStamp::problem() const {
  struct stat now {};
  if (!existed_ || ::stat(existingPath(path_).c_str(), &now) != 0) return {};
  const bool isUnchanged = now.st_dev == before_.st_dev && now.st_ino == before_.st_ino &&
                           now.st_size == before_.st_size && isSame(now.st_mtim, before_.st_mtim) &&
                           isSame(now.st_ctim, before_.st_ctim);
  return isUnchanged ? path_ + ": the model did not write it, it is older than the model's start" : "";
}

}  // namespace tarvex
