#include "base/TextSource.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <utility>

#include "base/Memory.h"
#include "base/SystemCalls.h"
#include "base/Temporaries.h"

namespace tarvex {
namespace {

constexpr std::size_t kReadBlock = 256 * 1024;      // read at once
constexpr int kUnfed = EPIPE;                       // no reading fails by it: of a fifo that nobody writes to
constexpr std::size_t kLargestPipe = 1024UL << 20;  // a pipe's size isn't known, so its text is held whole

// Counted in single bytes, many at a time, as long as these can't overflow.
std::int64_t lineEnds(std::string_view text) {
  constexpr std::size_t kMostOfAByte = 240;
  std::int64_t ends = 0;
  while (!text.empty()) {
    std::uint8_t few = 0;
    for (const char c : text.substr(0, kMostOfAByte)) few = static_cast<std::uint8_t>(few + (c == '\n' ? 1 : 0));
    ends += few;
    text.remove_prefix(std::min(kMostOfAByte, text.size()));
  }
  return ends;
}

}  // namespace

TextSource::~TextSource() {
  close();
}

TextSource::TextSource(TextSource&& other) noexcept {
  *this = std::move(other);
}

TextSource& TextSource::operator=(TextSource&& other) noexcept {
  if (this == &other) return *this;
  close();
  held_ = std::exchange(other.held_, {});
  linesDropped_ = std::exchange(other.linesDropped_, 0);
  unread_ = std::exchange(other.unread_, 0);
  size_ = std::exchange(other.size_, 0);
  progress_ = std::exchange(other.progress_, {});
  fd_ = std::exchange(other.fd_, -1);
  error_ = std::exchange(other.error_, 0);
  return *this;
}

void TextSource::drop(std::size_t bytes) {
  linesDropped_ += lineEnds(std::string_view(held_).substr(0, bytes));
  held_.erase(0, bytes);
}

std::int64_t TextSource::lineOf(std::size_t place) const {
  return 1 + linesDropped_ + lineEnds(std::string_view(held_).substr(0, place));
}

bool TextSource::fail(int error) {
  error_ = error;
  close();
  return false;
}

std::string TextSource::problem() const {
  return error_ == kUnfed ? "nobody writes to it" : std::strerror(error_);
}

void TextSource::close() {
  if (fd_ >= 0) SystemCalls::current().close(fd_);
  fd_ = -1;
  unread_ = 0;
}

bool TextSource::open(const std::string& path, const Progress& progress) {
  progress_ = progress;
  // Without O_NONBLOCK a fifo would be waited for its writer already here.
  fd_ = SystemCalls::current().open(path.c_str(), O_RDONLY | O_NONBLOCK, 0);
  struct stat status {};
  if (fd_ < 0 || ::fstat(fd_, &status) != 0) return fail(errno);
  if (S_ISDIR(status.st_mode)) return fail(EISDIR);
  if (!S_ISREG(status.st_mode)) return (!S_ISFIFO(status.st_mode) || awaitWriter()) && readWhole();
  unread_ = size_ = static_cast<std::uint64_t>(status.st_size);
  return true;
}

// A fifo that nobody writes to would hold the program for ever: it is waited for its writer, which may have been
// started a moment later, and refused then. What the first look finds is taken.
bool TextSource::awaitWriter() {
  constexpr int kTries = 100;
  constexpr useconds_t kSlice = 10'000;
  held_.resize(kReadBlock);
  for (int i = 0; i < kTries && !Temporaries::cancelled(); ++i) {
    if (i > 0) ::usleep(kSlice);
    const ssize_t got = SystemCalls::current().read(fd_, held_.data(), held_.size());
    if (got == 0 || (got < 0 && errno == EINTR)) continue;
    if (got < 0 && errno != EAGAIN) break;
    held_.resize(static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    return true;
  }
  held_.clear();
  return fail(kUnfed);
}

// What is left must be known before the first count is read. From here on a read may wait.
bool TextSource::readWhole() {
  static_cast<void>(::fcntl(fd_, F_SETFL, 0) == 0);
  while (held_.size() <= kLargestPipe)
    if (!appendBlock(kReadBlock)) return error_ == 0 && !stopped();
  held_.clear();
  return fail(EFBIG);
}

bool TextSource::appendBlock(std::size_t size) {
  const std::size_t old = held_.size();
  if (!fitsInMemory([&] { held_.resize(old + size); })) return fail(ENOMEM);
  ssize_t got = -1;
  do got = SystemCalls::current().read(fd_, held_.data() + old, size);
  while (got < 0 && errno == EINTR);
  const int error = errno;
  held_.resize(old + static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
  if (got < 0) return fail(error);
  unread_ -= std::min(unread_, static_cast<std::uint64_t>(got));
  if (got > 0 && progress_.report(size_ - unread_, size_)) return true;
  close();
  return false;
}

bool TextSource::hold(std::size_t wanted) {
  while (held_.size() < wanted) {
    if (fd_ < 0) return false;
    // A small file gets a small buffer; the byte more finds its end.
    const auto rest = static_cast<std::size_t>(std::min<std::uint64_t>(unread_ + 1, kReadBlock));
    if (!appendBlock(std::max(rest, wanted - held_.size()))) return false;
  }
  return true;
}

}  // namespace tarvex
