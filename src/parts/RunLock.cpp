#include "parts/RunLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <thread>

#include "base/SystemCalls.h"
#include "parts/PartProcesses.h"

namespace tarvex {

namespace {

constexpr mode_t kLockMode = 0666;

std::string nameIn(int fd) {
  std::array<char, 512> text{};
  const ssize_t got = SystemCalls::current().pread(fd, text.data(), text.size(), 0);
  std::string name(text.data(), static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
  name.resize(std::min(name.find('\n'), name.size()));
  return name.empty() ? "another program" : name;
}

// Who only looks for the holder has the lock for a moment: that is waited for.
bool lockFile(int fd) {
  constexpr int kTries = 5;
  constexpr std::chrono::milliseconds kPause{10};
  for (int tries = 0; tries < kTries; ++tries) {
    if (::flock(fd, LOCK_EX | LOCK_NB) == 0) return true;
    if (errno != EWOULDBLOCK) return false;
    std::this_thread::sleep_for(kPause);
  }
  errno = EWOULDBLOCK;
  return false;
}

}  // namespace

RunLock::~RunLock() {
  if (fd_ >= 0) SystemCalls::current().close(fd_);
}

bool RunLock::take(const std::string& path, std::string& message) {
  SystemCalls& calls = SystemCalls::current();
  fd_ = calls.open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, kLockMode);
  if (fd_ >= 0 && lockFile(fd_)) {
    const std::string name = "host " + hostName() + ", process " + std::to_string(::getpid()) + '\n';
    // Who can't be named holds the lock all the same.
    static_cast<void>(calls.ftruncate(fd_, 0) == 0 && calls.pwrite(fd_, name.data(), name.size(), 0) > 0);
    return true;
  }
  const int reason = errno;
  if (fd_ >= 0 && reason == EWOULDBLOCK)
    message = "The run is driven already: " + nameIn(fd_) + '\n' + path;
  else
    message = path + ": " + std::strerror(reason);
  if (fd_ >= 0) calls.close(fd_);
  fd_ = -1;
  return false;
}

std::string lockHolder(const std::string& path) {
  SystemCalls& calls = SystemCalls::current();
  const int fd = calls.open(path.c_str(), O_RDONLY | O_CLOEXEC, 0);
  if (fd < 0) return {};
  std::string holder;
  if (::flock(fd, LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK) holder = nameIn(fd);
  calls.close(fd);
  return holder;
}

}  // namespace tarvex
