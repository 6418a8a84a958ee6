#include "app/FileStamp.h"

#include <sys/stat.h>

#include "base/Paths.h"

namespace tarvex {

namespace {

std::int64_t nanoseconds(const timespec& time) {
  constexpr std::int64_t kPerSecond = 1'000'000'000;
  return time.tv_sec * kPerSecond + time.tv_nsec;
}

}  // namespace

FileStamp::FileStamp(const std::string& path) {
  struct stat status {};
  if (::stat(existingPath(path).c_str(), &status) != 0) return;
  exists_ = true;
  device_ = status.st_dev;
  number_ = status.st_ino;
  size_ = status.st_size;
  written_ = nanoseconds(status.st_mtim);
  changed_ = nanoseconds(status.st_ctim);
}

}  // namespace tarvex
