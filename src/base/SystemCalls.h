#pragma once

#include <sys/statvfs.h>
#include <sys/types.h>

#include <cstddef>

namespace tarvex {

// The calls to the operating system that can fail on a user's machine: full disk, missing directory, broken
// descriptor. All file traffic goes through the current object, so that a test can make any one of them fail.
// Each operation is the POSIX call of its name: -1 and errno on failure.
class SystemCalls {
 public:
  virtual ~SystemCalls() = default;
  virtual int open(const char* path, int flags, mode_t mode);
  virtual int close(int fd);
  virtual ssize_t read(int fd, void* buffer, std::size_t size);
  virtual ssize_t write(int fd, const void* buffer, std::size_t size);
  virtual ssize_t pread(int fd, void* buffer, std::size_t size, off_t offset);
  virtual ssize_t pwrite(int fd, const void* buffer, std::size_t size, off_t offset);
  virtual int ftruncate(int fd, off_t size);
  virtual int fsync(int fd);
  virtual int rename(const char* from, const char* to);
  virtual int unlink(const char* path);
  virtual int statvfs(const char* path, struct statvfs* status);

  static SystemCalls& current();
  // Makes `calls` current and returns the one that was; null restores the real ones. The caller keeps ownership.
  static SystemCalls* exchange(SystemCalls* calls);
};

}  // namespace tarvex
