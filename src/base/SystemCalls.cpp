#include "base/SystemCalls.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <utility>

namespace tarvex {
namespace {

SystemCalls& realCalls() {
  static SystemCalls calls;
  return calls;
}

SystemCalls* exchanged = nullptr;

}  // namespace

int SystemCalls::open(const char* path, int flags, mode_t mode) {
  return ::open(path, flags | O_CLOEXEC, mode);
}
int SystemCalls::close(int fd) {
  return ::close(fd);
}
ssize_t SystemCalls::read(int fd, void* buffer, std::size_t size) {
  return ::read(fd, buffer, size);
}
ssize_t SystemCalls::write(int fd, const void* buffer, std::size_t size) {
  return ::write(fd, buffer, size);
}
ssize_t SystemCalls::pread(int fd, void* buffer, std::size_t size, off_t offset) {
  return ::pread(fd, buffer, size, offset);
}
ssize_t SystemCalls::pwrite(int fd, const void* buffer, std::size_t size, off_t offset) {
  return ::pwrite(fd, buffer, size, offset);
}
int SystemCalls::ftruncate(int fd, off_t size) {
  return ::ftruncate(fd, size);
}
int SystemCalls::fsync(int fd) {
  return ::fsync(fd);
}
int SystemCalls::rename(const char* from, const char* to) {
  return std::rename(from, to);
}
int SystemCalls::unlink(const char* path) {
  return ::unlink(path);
}
int SystemCalls::statvfs(const char* path, struct statvfs* status) {
  return ::statvfs(path, status);
}

SystemCalls& SystemCalls::current() {
  return exchanged != nullptr ? *exchanged : realCalls();
}

SystemCalls* SystemCalls::exchange(SystemCalls* calls) {
  return std::exchange(exchanged, calls);
}

}  // namespace tarvex
