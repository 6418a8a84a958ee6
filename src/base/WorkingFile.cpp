#include "base/WorkingFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "base/SystemCalls.h"

namespace tarvex {
namespace {

constexpr mode_t kOwnerOnly = 0600;
constexpr int kMostTries = 1000;

// Seconds cut to 16 bits and milliseconds, and what keeps two files of one millisecond apart.
std::string fileName() {
  static int lastNumber = 0;
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  const long long milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
  return "tmp" + std::to_string(milliseconds / 1000 % 65536) + '_' + std::to_string(milliseconds % 1000) + '_' +
         std::to_string(::getpid()) + '_' + std::to_string(++lastNumber) + ".data";
}

}  // namespace

WorkingFile::~WorkingFile() {
  clear();
}

WorkingFile::WorkingFile(WorkingFile&& other) noexcept
    : fd_(std::exchange(other.fd_, -1)),
      directory_(std::move(other.directory_)),
      errorText_(std::move(other.errorText_)) {}

WorkingFile& WorkingFile::operator=(WorkingFile&& other) noexcept {
  if (this == &other) return *this;
  clear();
  fd_ = std::exchange(other.fd_, -1);
  directory_ = std::move(other.directory_);
  errorText_ = std::move(other.errorText_);
  return *this;
}

std::string WorkingFile::directory() {
  for (const char* name : {"TEMP", "TMPDIR"}) {
    const char* const value = std::getenv(name);
    if (value != nullptr && *value != '\0') return value;
  }
  return "/tmp";
}

bool WorkingFile::create() {
  SystemCalls& calls = SystemCalls::current();
  directory_ = directory();
  int error = EEXIST;
  for (int i = 0; i < kMostTries && error == EEXIST; ++i) {
    const std::string path = directory_ + '/' + fileName();
    fd_ = calls.open(path.c_str(), O_RDWR | O_CREAT | O_EXCL, kOwnerOnly);
    if (fd_ >= 0 && calls.unlink(path.c_str()) == 0) return true;
    error = errno;
    if (fd_ >= 0) break;
  }
  clear();
  return fail("Cannot create a working file in ", error);
}

bool WorkingFile::fail(const char* what, int error) const {
  errorText_ = what + directory_ + ": " + std::strerror(error);
  return false;
}

bool WorkingFile::read(std::uint64_t offset, void* data, std::size_t size) const {
  char* to = static_cast<char*>(data);
  while (size > 0 && fd_ >= 0) {
    const ssize_t got = SystemCalls::current().pread(fd_, to, size, static_cast<off_t>(offset));
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return fail("Cannot read the working file in ", errno);
    if (got == 0) break;
    to += got;
    offset += static_cast<std::uint64_t>(got);
    size -= static_cast<std::size_t>(got);
  }
  if (size > 0) std::memset(to, 0, size);
  return true;
}

bool WorkingFile::write(std::uint64_t offset, const void* data, std::size_t size) {
  if (fd_ < 0 && !create()) return false;
  const char* from = static_cast<const char*>(data);
  while (size > 0) {
    const ssize_t put = SystemCalls::current().pwrite(fd_, from, size, static_cast<off_t>(offset));
    if (put < 0 && errno == EINTR) continue;
    if (put <= 0) return fail("Cannot write the working file in ", put < 0 ? errno : EIO);
    from += put;
    offset += static_cast<std::uint64_t>(put);
    size -= static_cast<std::size_t>(put);
  }
  return true;
}

void WorkingFile::clear() {
  if (fd_ >= 0) SystemCalls::current().close(fd_);
  fd_ = -1;
}

}  // namespace tarvex
