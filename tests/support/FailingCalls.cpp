#include "support/FailingCalls.h"

#include <algorithm>

namespace tarvex::test {

FailingCalls::FailingCalls() : previous_(exchange(this)) {}

FailingCalls::~FailingCalls() {
  exchange(previous_);
}

void FailingCalls::fail(Call call, int n, int error, bool once) {
  plans_[call] = {0, n, error, once};
}

void FailingCalls::clearFailures() {
  plans_.fill({});
}

bool FailingCalls::fails(Call call) {
  Plan& plan = plans_[call];
  ++plan.count;
  if (plan.failAt == 0 || plan.count < plan.failAt || (plan.once && plan.count > plan.failAt)) return false;
  errno = plan.error;
  return true;
}

bool FailingCalls::interrupted() {
  if (shortSize_ == 0) return false;
  interrupt_ = !interrupt_;
  if (interrupt_) errno = EINTR;
  return interrupt_;
}

std::size_t FailingCalls::shortened(std::size_t size) const {
  return shortSize_ == 0 ? size : std::min(size, shortSize_);
}

int FailingCalls::open(const char* path, int flags, mode_t mode) {
  return fails(kOpen) ? -1 : SystemCalls::open(path, flags, mode);
}

int FailingCalls::close(int fd) {
  // The descriptor is gone also when closing reports a failure.
  const bool failed = fails(kClose);
  const int error = errno;
  const int result = SystemCalls::close(fd);
  if (failed) errno = error;
  return failed ? -1 : result;
}

ssize_t FailingCalls::read(int fd, void* buffer, std::size_t size) {
  return fails(kRead) || interrupted() ? -1 : SystemCalls::read(fd, buffer, shortened(size));
}

ssize_t FailingCalls::write(int fd, const void* buffer, std::size_t size) {
  return fails(kWrite) || interrupted() ? -1 : SystemCalls::write(fd, buffer, shortened(size));
}

ssize_t FailingCalls::pread(int fd, void* buffer, std::size_t size, off_t offset) {
  return fails(kPread) || interrupted() ? -1 : SystemCalls::pread(fd, buffer, shortened(size), offset);
}

ssize_t FailingCalls::pwrite(int fd, const void* buffer, std::size_t size, off_t offset) {
  return fails(kPwrite) || interrupted() ? -1 : SystemCalls::pwrite(fd, buffer, shortened(size), offset);
}

int FailingCalls::ftruncate(int fd, off_t size) {
  return fails(kFtruncate) ? -1 : SystemCalls::ftruncate(fd, size);
}
int FailingCalls::fsync(int fd) {
  return fails(kFsync) ? -1 : SystemCalls::fsync(fd);
}
int FailingCalls::rename(const char* from, const char* to) {
  return fails(kRename) ? -1 : SystemCalls::rename(from, to);
}
int FailingCalls::unlink(const char* path) {
  return fails(kUnlink) ? -1 : SystemCalls::unlink(path);
}
int FailingCalls::statvfs(const char* path, struct statvfs* status) {
  const int result = SystemCalls::statvfs(path, status);
  if (free_) {
    status->f_frsize = 1;
    status->f_bavail = *free_;
  }
  return result;
}

}  // namespace tarvex::test
