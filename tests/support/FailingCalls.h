#pragma once

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <optional>

#include "base/SystemCalls.h"

namespace tarvex::test {

// Stands between the system and its calls until the end of the scope: counts them and makes chosen ones fail. All
// others reach the real system.
class FailingCalls : public SystemCalls {
 public:
  enum Call { kOpen, kClose, kRead, kWrite, kPread, kPwrite, kFtruncate, kFsync, kRename, kUnlink, kCalls };

  FailingCalls() : previous_(exchange(this)) {}
  ~FailingCalls() override { exchange(previous_); }
  FailingCalls(const FailingCalls&) = delete;
  FailingCalls& operator=(const FailingCalls&) = delete;

  // The `n`-th call of this kind from now on (from 1), and all later ones unless `once`, fails with `error`.
  void fail(Call call, int n, int error = ENOSPC, bool once = false) { plans_[call] = {0, n, error, once}; }
  void clearFailures() { plans_.fill({}); }
  // Calls since the last fail() of this kind, or since the start; failed ones included.
  int count(Call call) const { return plans_[call].count; }
  // Reads and writes move at most `size` bytes at a time, and every second one is first interrupted by a signal.
  void makeShort(std::size_t size) { shortSize_ = size; }
  // All file systems have this much left.
  void leaveFree(std::uint64_t bytes) { free_ = bytes; }

  int open(const char* path, int flags, mode_t mode) override {
    return fails(kOpen) ? -1 : SystemCalls::open(path, flags, mode);
  }
  int close(int fd) override {
    // The descriptor is gone also when closing reports a failure.
    const bool failed = fails(kClose);
    const int error = errno;
    const int result = SystemCalls::close(fd);
    if (failed) errno = error;
    return failed ? -1 : result;
  }
  ssize_t read(int fd, void* buffer, std::size_t size) override {
    return fails(kRead) || interrupted() ? -1 : SystemCalls::read(fd, buffer, shortened(size));
  }
  ssize_t write(int fd, const void* buffer, std::size_t size) override {
    return fails(kWrite) || interrupted() ? -1 : SystemCalls::write(fd, buffer, shortened(size));
  }
  ssize_t pread(int fd, void* buffer, std::size_t size, off_t offset) override {
    return fails(kPread) || interrupted() ? -1 : SystemCalls::pread(fd, buffer, shortened(size), offset);
  }
  ssize_t pwrite(int fd, const void* buffer, std::size_t size, off_t offset) override {
    return fails(kPwrite) || interrupted() ? -1 : SystemCalls::pwrite(fd, buffer, shortened(size), offset);
  }
  int ftruncate(int fd, off_t size) override { return fails(kFtruncate) ? -1 : SystemCalls::ftruncate(fd, size); }
  int fsync(int fd) override { return fails(kFsync) ? -1 : SystemCalls::fsync(fd); }
  int rename(const char* from, const char* to) override { return fails(kRename) ? -1 : SystemCalls::rename(from, to); }
  int unlink(const char* path) override { return fails(kUnlink) ? -1 : SystemCalls::unlink(path); }
  int statvfs(const char* path, struct statvfs* status) override {
    const int result = SystemCalls::statvfs(path, status);
    if (free_) {
      status->f_frsize = 1;
      status->f_bavail = *free_;
    }
    return result;
  }

 private:
  struct Plan {
    int count = 0;
    int failAt = 0;  // 0: never
    int error = 0;
    bool once = false;
  };

  bool fails(Call call) {
    Plan& plan = plans_[call];
    ++plan.count;
    if (plan.failAt == 0 || plan.count < plan.failAt || (plan.once && plan.count > plan.failAt)) return false;
    errno = plan.error;
    return true;
  }
  bool interrupted() {
    if (shortSize_ == 0) return false;
    interrupt_ = !interrupt_;
    if (interrupt_) errno = EINTR;
    return interrupt_;
  }
  std::size_t shortened(std::size_t size) const { return shortSize_ == 0 ? size : std::min(size, shortSize_); }

  std::array<Plan, kCalls> plans_{};
  std::size_t shortSize_ = 0;
  std::optional<std::uint64_t> free_;
  bool interrupt_ = false;
  SystemCalls* previous_;
};

}  // namespace tarvex::test
