#include "base/TextWriter.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <climits>
#include <cstring>
#include <utility>
#include <vector>

#include "base/Cores.h"
#include "base/Memory.h"
#include "base/NumberText.h"
#include "base/Paths.h"
#include "base/SystemCalls.h"
#include "base/Temporaries.h"

namespace tarvex {
namespace {

constexpr std::size_t kWriteBlock = 256 * 1024;  // written at once
constexpr mode_t kNewFileMode = 0666;            // before the user's mask
constexpr mode_t kModeBits = 07777;
constexpr int kMostLinks = 40;  // followed, as the kernel does

struct Target {
  std::string path;  // where the file itself stands, links followed
  bool exists = false;
  bool inPlace = false;  // no regular file, or an open descriptor: can't be replaced
  mode_t mode = kNewFileMode;
  int error = 0;
};

std::string directoryOf(const std::string& path) {
  return path.substr(0, path.rfind('/') + 1);
}

// The current directory may change before the commit, and a link must go on pointing to the file: so the target is
// settled at the start.
Target findTarget(const std::string& path) {
  Target target;
  target.path = absolutePath(path);
  if (path.empty()) target.error = ENOENT;
  struct stat status {};
  target.exists = target.error == 0 && ::stat(target.path.c_str(), &status) == 0;
  if (target.exists) {
    target.mode = status.st_mode & kModeBits;
    target.inPlace = !S_ISREG(status.st_mode);
    if (S_ISDIR(status.st_mode)) target.error = EISDIR;
  }
  if (target.inPlace || target.error != 0) return target;
  char link[PATH_MAX];
  for (int i = 0; i < kMostLinks; ++i) {
    const ssize_t size = ::readlink(target.path.c_str(), link, sizeof link);
    if (size < 0) return target;
    std::string to(link, static_cast<std::size_t>(size));
    if (target.path.starts_with("/proc/")) {  // /dev/stdout that goes to a file: others write there as well
      target.inPlace = true;
      return target;
    }
    target.path = to.starts_with('/') ? std::move(to) : directoryOf(target.path) + to;
  }
  target.error = ELOOP;
  return target;
}

// Opens what can't be replaced. A fifo that nobody reads would hold the program for ever: it is waited for its reader,
// which may have been started a moment later, and refused then.
int openInPlace(const std::string& path) {
  constexpr int kTries = 100;
  constexpr useconds_t kSlice = 10'000;
  SystemCalls& calls = SystemCalls::current();
  int fd = -1;
  for (int i = 0; i < kTries && fd < 0; ++i) {
    if (i > 0) ::usleep(kSlice);
    fd = calls.open(path.c_str(), O_WRONLY | O_APPEND | O_NONBLOCK | O_CLOEXEC, 0);
    if (fd < 0 && errno != ENXIO) return fd;
  }
  if (fd >= 0) static_cast<void>(::fcntl(fd, F_SETFL, O_APPEND) == 0);  // from now on it may wait
  return fd;
}

}  // namespace

TextWriter::TextWriter() = default;

TextWriter::TextWriter(const std::string& path) : name_(path) {
  const Target target = findTarget(path);
  target_ = target.path;
  error_ = target.error;
  if (error_ == 0 && target.exists && ::access(target_.c_str(), W_OK) != 0) error_ = errno;
  if (error_ != 0) return;
  if (target.inPlace) {
    fd_ = openInPlace(target_);
  } else {
    fd_ = Temporaries::createFile(directoryOf(target_), target.mode, temporary_);
    // The user's mask may have narrowed the mode. Where a file system keeps no modes the narrower one stands.
    if (fd_ >= 0 && target.exists) static_cast<void>(::fchmod(fd_, target.mode) == 0);
  }
  if (fd_ < 0) error_ = errno;
}

TextWriter::~TextWriter() {
  discard();
}

TextWriter& TextWriter::operator<<(std::string_view text) {
  if (error_ != 0) return *this;
  if (!fitsInMemory([&] { buffer_.append(text); })) {
    setError(ENOMEM);
    return *this;
  }
  if (buffer_.size() >= kWriteBlock && !target_.empty()) flush();
  return *this;
}

TextWriter& TextWriter::operator<<(char c) {
  return *this << std::string_view(&c, 1);
}

TextWriter& TextWriter::operator<<(double value) {
  char text[kMaxNumberText];
  const char* const end = writeNumber(text, value, precision_);
  return *this << std::string_view(text, static_cast<std::size_t>(end - text));
}

TextWriter& TextWriter::writeNumbers(const double* values, std::size_t count, char after, std::size_t columns) {
  constexpr std::size_t kAtOnce = 16384;  // half a millisecond
  constexpr std::size_t kLeast = 2048;
  constexpr std::size_t kMostText = kMaxNumberText + 2;
  struct Part {
    std::vector<char> text;
    std::size_t length = 0;
  };
  std::vector<Part> parts;
  for (std::size_t begin = 0; begin < count && ok(); begin += kAtOnce) {
    const std::size_t numbers = std::min(kAtOnce, count - begin);
    const std::size_t needed = partsOf(numbers, kLeast);
    const bool hasRoom = fitsInMemory([&] {
      parts.resize(std::max(parts.size(), needed));
      for (Part& part : parts) part.text.resize((numbers / needed + 1) * kMostText);
    });
    if (!hasRoom) {
      setError(ENOMEM);
      return *this;
    }
    inParts(numbers, kLeast, [&](std::size_t p, std::size_t first, std::size_t last) {
      char* next = parts[p].text.data();
      std::size_t inLine = columns == 0 ? 0 : (begin + first) % columns;
      for (const double* value = values + begin + first; value != values + begin + last; ++value) {
        next = writeNumber(next, *value, precision_);
        *next++ = after;
        if (++inLine == columns) {
          *next++ = '\n';
          inLine = 0;
        }
      }
      parts[p].length = static_cast<std::size_t>(next - parts[p].text.data());
    });
    for (std::size_t p = 0; p < needed; ++p) *this << std::string_view(parts[p].text.data(), parts[p].length);
  }
  return *this;
}

TextWriter& TextWriter::writeInteger(std::int64_t value) {
  char text[kMaxNumberText];
  const char* const end = std::to_chars(text, text + kMaxNumberText, value).ptr;
  return *this << std::string_view(text, static_cast<std::size_t>(end - text));
}

void TextWriter::watch(const Progress& progress, std::uint64_t bytes) {
  progress_ = progress;
  expected_ = bytes;
}

int TextWriter::setPrecision(int digits) {
  return std::exchange(precision_, digits);
}

void TextWriter::setError(int error) {
  if (error_ == 0) error_ = error;
}

bool TextWriter::refuse(const std::string& reason) {
  if (error_ == 0) refusal_ = reason;
  setError(EINVAL);
  return false;
}

std::string TextWriter::problem() const {
  const std::string reason = refusal_.empty() ? std::strerror(error_) : refusal_;
  return name_.empty() ? reason : name_ + ": " + reason;
}

std::string withProblem(const std::string& message, const TextWriter& out) {
  return message + '\n' + out.problem();
}

void TextWriter::flush() {
  const char* data = buffer_.data();
  std::size_t left = buffer_.size();
  while (left > 0 && error_ == 0) {
    const ssize_t written = SystemCalls::current().write(fd_, data, left);
    if (written > 0) {
      data += written;
      left -= static_cast<std::size_t>(written);
      written_ += static_cast<std::uint64_t>(written);
    } else if (written == 0 || errno != EINTR) {
      setError(written == 0 ? EIO : errno);
    }
  }
  buffer_.clear();
  if (!progress_.report(std::min(written_, expected_), expected_)) setError(ECANCELED);
}

bool TextWriter::commit() {
  if (target_.empty()) return ok();
  SystemCalls& calls = SystemCalls::current();
  if (ok()) flush();
  if (ok() && !temporary_.empty() && calls.fsync(fd_) != 0) setError(errno);
  if (fd_ >= 0 && calls.close(std::exchange(fd_, -1)) != 0 && errno != EINTR) setError(errno);
  if (Temporaries::cancelled()) setError(ECANCELED);
  if (ok() && !temporary_.empty()) {
    if (calls.rename(temporary_.c_str(), target_.c_str()) == 0)
      Temporaries::forget(std::exchange(temporary_, {}));
    else
      setError(errno);
  }
  discard();
  return ok();
}

void TextWriter::discard() {
  SystemCalls& calls = SystemCalls::current();
  if (fd_ >= 0) calls.close(std::exchange(fd_, -1));
  if (temporary_.empty()) return;
  calls.unlink(temporary_.c_str());
  Temporaries::forget(std::exchange(temporary_, {}));
}

std::string whyNotWritable(const std::string& path) {
  const Target target = findTarget(path);
  int error = target.error;
  if (error == 0 && target.exists && ::access(target.path.c_str(), W_OK) != 0) error = errno;
  if (error == 0 && !target.inPlace && ::access(directoryOf(target.path).c_str(), W_OK | X_OK) != 0) error = errno;
  return error == 0 ? "" : path + ": " + std::strerror(error);
}

}  // namespace tarvex
