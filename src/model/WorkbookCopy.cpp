#include "model/WorkbookCopy.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "base/SystemCalls.h"

namespace tarvex {

namespace {

constexpr mode_t kModeBits = 07777;
constexpr mode_t kPrivate = 0600;  // until the workbook's own permissions are set

}  // namespace

WorkbookCopy::~WorkbookCopy() {
  if (!path_.empty()) SystemCalls::current().unlink(path_.c_str());
}

bool WorkbookCopy::fail() {
  error_ = errno;
  return false;
}

bool WorkbookCopy::make(const std::string& workbook) {
  static int lastNumber = 0;
  if (::access(workbook.c_str(), R_OK | W_OK) != 0) return fail();
  workbook_ = workbook;
  std::string path = workbook.substr(0, workbook.rfind('/') + 1) + ".tarvex-" + std::to_string(::getpid()) + '-' +
                     std::to_string(++lastNumber) + ".tmp";
  SystemCalls& calls = SystemCalls::current();
  const int fd = calls.open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL, kPrivate);
  if (fd < 0) return fail();
  calls.close(fd);
  path_ = std::move(path);
  return true;
}

bool WorkbookCopy::replaceWorkbook() {
  SystemCalls& calls = SystemCalls::current();
  struct stat status {};
  if (::stat(workbook_.c_str(), &status) != 0) return fail();
  const int fd = calls.open(path_.c_str(), O_RDWR, 0);
  if (fd < 0) return fail();
  // Where a file system keeps no modes the narrower one stands.
  static_cast<void>(::fchmod(fd, status.st_mode & kModeBits) == 0);
  const bool safe = calls.fsync(fd) == 0;
  if (!safe) fail();
  calls.close(fd);
  if (!safe) return false;
  if (calls.rename(path_.c_str(), workbook_.c_str()) != 0) return fail();
  path_.clear();
  return true;
}

}  // namespace tarvex
