#include "app/KeptFile.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "base/SystemCalls.h"

namespace tarvex {

namespace {

bool isRegular(const std::string& path) {
  struct stat status {};
  return ::lstat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

bool exists(const std::string& path) {
  struct stat status {};
  return ::lstat(path.c_str(), &status) == 0;
}

}  // namespace

KeptFile::KeptFile(std::string path) : path_(std::move(path)), aside_(path_ + ".before-trial") {
  SystemCalls& calls = SystemCalls::current();
  const bool wasLeft = isRegular(aside_);
  if (!wasLeft && exists(path_) && !isRegular(path_)) {
    // A link or a device: what it leads to would be written.
    problem_ = path_ + ": it is no plain file, and so can't be kept";
    return;
  }
  isOurs_ = true;
  if (!wasLeft && !exists(path_)) return;
  isAside_ = wasLeft || calls.rename(path_.c_str(), aside_.c_str()) == 0;
  if (isAside_) return;
  problem_ = path_ + ": it can't be put aside: " + std::strerror(errno);
  isOurs_ = false;
}

KeptFile::~KeptFile() {
  static_cast<void>(putBack());  // who wants to know has asked
}

std::string KeptFile::putBack() {
  SystemCalls& calls = SystemCalls::current();
  const bool isBack = !isAside_ || calls.rename(aside_.c_str(), path_.c_str()) == 0;
  const bool isGone = isAside_ || !isOurs_ || !isRegular(path_) || calls.unlink(path_.c_str()) == 0;
  const std::string reason = std::strerror(errno);
  isAside_ = isOurs_ = false;
  if (!isBack) return path_ + ": " + reason + "; what was there is now " + aside_;
  return isGone ? "" : path_ + ": " + reason;
}

}  // namespace tarvex
