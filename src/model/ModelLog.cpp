#include "model/ModelLog.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <string_view>
#include <utility>

#include "base/SystemCalls.h"

namespace tarvex {

namespace {

constexpr std::string_view kMark = "What the model printed, kept by Tarvex until its next run.\n";
constexpr mode_t kMode = 0666;                // less the user's mask
constexpr int kMostNumbers = 99;              // behind names that are taken
constexpr off_t kLargest = off_t{64} << 20;   // bytes; what is read by a person is far less
constexpr off_t kBeginning = off_t{1} << 20;  // that stay of a larger one
constexpr std::size_t kEnd = std::size_t{64} << 10;
constexpr int kMostTries = 5;  // at the end of a log that grows

bool writeAll(int fd, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = SystemCalls::current().write(fd, text.data(), text.size());
    if (written < 0 && errno != EINTR) return false;
    text.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(written, 0)));
  }
  return true;
}

}  // namespace

bool ModelLog::open(const std::string& path) {
  close();
  if (path.empty()) return false;
  SystemCalls& calls = SystemCalls::current();
  for (int number = 1; number <= kMostNumbers && fd_ < 0; ++number) {
    path_ = number == 1 ? path : path + '.' + std::to_string(number);
    fd_ = calls.open(path_.c_str(), O_RDWR | O_APPEND | O_CREAT | O_EXCL | O_CLOEXEC, kMode);
    if (fd_ < 0 && errno != EEXIST) break;
    if (fd_ < 0 && !reopen(path_)) continue;
  }
  if (fd_ >= 0 && writeAll(fd_, kMark)) return true;
  close();
  path_.clear();
  return false;
}

// A log of an earlier run, emptied. Links are not followed, nor is a pipe waited for.
bool ModelLog::reopen(const std::string& path) {
  SystemCalls& calls = SystemCalls::current();
  const int fd = calls.open(path.c_str(), O_RDWR | O_APPEND | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0);
  if (fd < 0) return false;
  struct stat status {};
  std::string start(kMark.size(), '\0');
  const bool isOurs = ::fstat(fd, &status) == 0 && S_ISREG(status.st_mode) &&
                      calls.pread(fd, start.data(), start.size(), 0) == static_cast<ssize_t>(start.size()) &&
                      start == kMark && calls.ftruncate(fd, 0) == 0;
  if (isOurs)
    fd_ = fd;
  else
    calls.close(fd);
  return isOurs;
}

void ModelLog::close() {
  if (fd_ >= 0) SystemCalls::current().close(std::exchange(fd_, -1));
}

void ModelLog::trim() {
  SystemCalls& calls = SystemCalls::current();
  struct stat status {};
  if (fd_ < 0 || ::fstat(fd_, &status) != 0 || status.st_size <= kLargest) return;
  // The model goes on appending meanwhile: what it prints between the last two calls is lost with the middle.
  std::string end;
  off_t size = 0;
  for (int tries = 0; size != status.st_size && tries < kMostTries; ++tries) {
    size = status.st_size;
    end.resize(kEnd);
    const ssize_t got = calls.pread(fd_, end.data(), end.size(), size - static_cast<off_t>(kEnd));
    end.resize(static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    if (::fstat(fd_, &status) != 0) return;
  }
  if (calls.ftruncate(fd_, kBeginning) == 0) writeAll(fd_, "\n[... the middle was dropped ...]\n" + end);
}

}  // namespace tarvex
