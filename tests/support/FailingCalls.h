#pragma once

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

  FailingCalls();
  ~FailingCalls() override;
  FailingCalls(const FailingCalls&) = delete;
  FailingCalls& operator=(const FailingCalls&) = delete;

  // The `n`-th call of this kind from now on (from 1), and all later ones unless `once`, fails with `error`.
  void fail(Call call, int n, int error = ENOSPC, bool once = false);
  void clearFailures();
  // Calls since the last fail() of this kind, or since the start; failed ones included.
  int count(Call call) const { return plans_[call].count; }
  // Reads and writes move at most `size` bytes at a time, and every second one is first interrupted by a signal.
  void makeShort(std::size_t size) { shortSize_ = size; }
  // All file systems have this much left.
  void leaveFree(std::uint64_t bytes) { free_ = bytes; }

  int open(const char* path, int flags, mode_t mode) override;
  int close(int fd) override;
  ssize_t read(int fd, void* buffer, std::size_t size) override;
  ssize_t write(int fd, const void* buffer, std::size_t size) override;
  ssize_t pread(int fd, void* buffer, std::size_t size, off_t offset) override;
  ssize_t pwrite(int fd, const void* buffer, std::size_t size, off_t offset) override;
  int ftruncate(int fd, off_t size) override;
  int fsync(int fd) override;
  int rename(const char* from, const char* to) override;
  int unlink(const char* path) override;
  int statvfs(const char* path, struct statvfs* status) override;

 private:
  struct Plan {
    int count = 0;
    int failAt = 0;  // 0: never
    int error = 0;
    bool once = false;
  };

  bool fails(Call call);
  bool interrupted();
  std::size_t shortened(std::size_t size) const;

  std::array<Plan, kCalls> plans_{};
  std::size_t shortSize_ = 0;
  std::optional<std::uint64_t> free_;
  bool interrupt_ = false;
  SystemCalls* previous_;
};

}  // namespace tarvex::test
