#include "parts/RunDirectory.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "base/SystemCalls.h"

namespace tarvex {

namespace {

constexpr mode_t kFileMode = 0666;       // less the user's mask
constexpr std::size_t kTail = 4096;      // bytes of a log's end that are looked at
constexpr std::size_t kLineShown = 300;  // characters of a line that a person is shown
constexpr int kPartDigits = 4;

bool writeWhole(int fd, const std::string& text) {
  std::size_t done = 0;
  while (done < text.size()) {
    const ssize_t written = SystemCalls::current().write(fd, text.data() + done, text.size() - done);
    if (written < 0 && errno != EINTR) return false;
    done += static_cast<std::size_t>(std::max<ssize_t>(written, 0));
  }
  return true;
}

// The file's content from `back` bytes before its end on.
std::string endOf(const std::string& path, std::size_t back) {
  SystemCalls& calls = SystemCalls::current();
  const int fd = calls.open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK, 0);
  if (fd < 0) return {};
  const off_t size = ::lseek(fd, 0, SEEK_END);
  const off_t from = std::max<off_t>(size - static_cast<off_t>(back), 0);
  std::string text(static_cast<std::size_t>(std::max<off_t>(size - from, 0)), '\0');
  const ssize_t got = calls.pread(fd, text.data(), text.size(), from);
  calls.close(fd);
  text.resize(static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
  return text;
}

}  // namespace

std::string RunDirectory::partName(std::int32_t part) {
  const std::string digits = std::to_string(part);
  return std::string(static_cast<std::size_t>(std::max(0, kPartDigits - static_cast<int>(digits.size()))), '0') +
         digits;
}

std::string RunDirectory::workbook(const std::string& original) const {
  return path_ + "/workbook" + std::filesystem::path(original).extension().string();
}

std::string RunDirectory::attempt(std::int32_t part, std::int32_t attempt) const {
  return parts() + '/' + partName(part) + '/' + std::to_string(attempt);
}

std::string RunDirectory::mark(std::int32_t part, std::int32_t attempt, const char* what) const {
  return marks() + '/' + partName(part) + '.' + std::to_string(attempt) + '.' + what;
}

bool makeDirectories(const std::string& path, std::string& message) {
  std::error_code error;
  std::filesystem::create_directories(path, error);
  if (!error) return true;
  message = path + ": " + error.message();
  return false;
}

bool writePlainFile(const std::string& path, const std::string& text, std::string& message) {
  SystemCalls& calls = SystemCalls::current();
  const int fd = calls.open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, kFileMode);
  bool done = fd >= 0 && writeWhole(fd, text);
  int reason = done ? 0 : errno;
  if (fd >= 0 && calls.close(fd) != 0 && done) {
    done = false;
    reason = errno;
  }
  if (!done) message = path + ": " + std::strerror(reason);
  return done;
}

std::string contentOf(const std::string& path) {
  constexpr std::size_t kMost = std::size_t{64} << 20;
  return endOf(path, kMost);
}

std::string lastLineOf(const std::string& path) {
  std::string text = endOf(path, kTail);
  while (!text.empty() && (text.back() == '\n' || text.back() == '\r' || text.back() == ' ')) text.pop_back();
  text.erase(0, text.rfind('\n') + 1);
  if (text.size() > kLineShown) text = text.substr(0, kLineShown) + "...";
  std::ranges::replace_if(
      text, [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
  return text;
}

}  // namespace tarvex
