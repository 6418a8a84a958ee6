#include "model/WorkbookCopy.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "base/SystemCalls.h"
#include "base/Temporaries.h"

namespace tarvex {

namespace {

constexpr mode_t kModeBits = 07777;
constexpr mode_t kPrivate = 0600;  // until the workbook's own permissions are set

}  // namespace

WorkbookCopy::~WorkbookCopy() {
  if (path_.empty()) return;
  SystemCalls::current().unlink(path_.c_str());
  Temporaries::forget(path_);
}

bool WorkbookCopy::fail() {
  error_ = errno;
  return false;
}

bool WorkbookCopy::make(const std::string& workbook) {
  if (::access(workbook.c_str(), R_OK | W_OK) != 0) return fail();
  workbook_ = workbook;
  const int fd = Temporaries::createFile(workbook.substr(0, workbook.rfind('/') + 1), kPrivate, path_);
  if (fd < 0) return fail();
  SystemCalls::current().close(fd);
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
  Temporaries::forget(path_);
  path_.clear();
  return true;
}

std::string openElsewhere(const std::string& workbook) {
  const std::filesystem::path path(workbook);
  const std::string name = path.filename().string();
  for (const std::string& lock : {".~lock." + name + '#', "~$" + name}) {
    std::error_code error;
    if (std::filesystem::exists(path.parent_path() / lock, error))
      return "The workbook is open in another application. It is run as it was saved last.\n" + workbook;
  }
  return {};
}

}  // namespace tarvex
