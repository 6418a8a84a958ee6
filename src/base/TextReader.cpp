#include "base/TextReader.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <limits>
#include <utility>

#include "base/NumberText.h"
#include "base/Paths.h"
#include "base/SystemCalls.h"

namespace tarvex {
namespace {

constexpr std::size_t kBlock = 256 * 1024;           // read at once
constexpr std::size_t kUsualNumber = 64;             // looked at for a number; longer ones widen the look
constexpr std::size_t kLongestNumber = 1024 * 1024;  // no sensible number is longer
constexpr std::size_t kLargestPipe = 1024UL << 20;   // a pipe's size isn't known, so its text is held whole
constexpr std::size_t kNumberTail = 16;              // a number this near to the end of the look may go on behind it
constexpr std::size_t kNoLimit = std::numeric_limits<std::size_t>::max();

bool isSpace(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

// No character in `text` that would end a number.
bool isUnfinishedNumber(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '.' || c == '+' ||
           c == '-';
  });
}

std::size_t saturatedSum(std::size_t a, std::size_t b) {
  return a > kNoLimit - b ? kNoLimit : a + b;
}

}  // namespace

TextReader TextReader::fromFile(const std::string& path) {
  TextReader reader;
  reader.open(existingPath(path));
  return reader;
}

TextReader TextReader::fromText(std::string text) {
  TextReader reader;
  reader.buffer_ = std::move(text);
  return reader;
}

TextReader::~TextReader() {
  closeFile();
}

TextReader::TextReader(TextReader&& other) noexcept {
  *this = std::move(other);
}

TextReader& TextReader::operator=(TextReader&& other) noexcept {
  if (this == &other) return *this;
  closeFile();
  buffer_ = std::exchange(other.buffer_, {});
  position_ = std::exchange(other.position_, 0);
  unread_ = std::exchange(other.unread_, 0);
  fd_ = std::exchange(other.fd_, -1);
  failed_ = std::exchange(other.failed_, true);
  return *this;
}

void TextReader::open(const std::string& path) {
  failed_ = true;
  fd_ = SystemCalls::current().open(path.c_str(), O_RDONLY, 0);
  struct stat status {};
  if (fd_ < 0 || ::fstat(fd_, &status) != 0 || S_ISDIR(status.st_mode)) return closeFile();
  failed_ = false;
  if (S_ISREG(status.st_mode))
    unread_ = static_cast<std::uint64_t>(status.st_size);
  else
    readWhole(kLargestPipe);
}

// remaining() must be known before the first count is read.
void TextReader::readWhole(std::size_t limit) {
  while (buffer_.size() <= limit)
    if (!appendBlock(kBlock)) return;
  closeFile();
  buffer_.clear();
  failed_ = true;
}

void TextReader::closeFile() {
  if (fd_ >= 0) SystemCalls::current().close(fd_);
  fd_ = -1;
  unread_ = 0;
}

bool TextReader::appendBlock(std::size_t size) {
  const std::size_t old = buffer_.size();
  buffer_.resize(old + size);
  ssize_t got = -1;
  do got = SystemCalls::current().read(fd_, buffer_.data() + old, size);
  while (got < 0 && errno == EINTR);
  buffer_.resize(old + static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
  if (got <= 0) {
    failed_ = failed_ || got < 0;
    closeFile();
    return false;
  }
  unread_ -= std::min(unread_, static_cast<std::uint64_t>(got));
  return true;
}

bool TextReader::fill(std::size_t wanted) {
  if (available() >= wanted) return true;
  if (fd_ < 0) return false;
  buffer_.erase(0, position_);
  position_ = 0;
  while (buffer_.size() < wanted) {
    // A small file gets a small buffer; the byte more finds its end.
    const auto rest = static_cast<std::size_t>(std::min<std::uint64_t>(unread_ + 1, kBlock));
    if (!appendBlock(std::max(rest, wanted - buffer_.size()))) return false;
  }
  return true;
}

void TextReader::skipSpace() {
  do {
    while (position_ < buffer_.size() && isSpace(buffer_[position_])) ++position_;
  } while (position_ == buffer_.size() && fill(1));
}

// parse(text, value) gives the bytes taken from the start of `text`, 0 for none.
template <class Number, class Parse>
TextReader& TextReader::readNumber(Number& value, Parse parse) {
  if (failed_) return *this;
  skipSpace();
  std::size_t wanted = kUsualNumber;
  for (;;) {
    const bool more = fill(wanted);
    const std::string_view text(buffer_.data() + position_, available());
    Number parsed{};
    const std::size_t taken = failed_ ? 0 : parse(text, parsed);
    if (more && (taken == 0 || text.size() - taken < kNumberTail) && isUnfinishedNumber(text)) {
      wanted = 2 * text.size();
      if (wanted <= kLongestNumber) continue;
      failed_ = true;
      return *this;
    }
    if (taken == 0) {
      failed_ = true;
    } else {
      position_ += taken;
      value = parsed;
    }
    return *this;
  }
}

template <class Integer>
TextReader& TextReader::readInteger(Integer& value) {
  return readNumber(value, [](std::string_view text, Integer& parsed) -> std::size_t {
    const char* const begin = text.data();
    const char* const end = begin + text.size();
    const bool plus = text.size() > 1 && text[0] == '+' && text[1] != '-';
    const std::from_chars_result result = std::from_chars(begin + (plus ? 1 : 0), end, parsed);
    return result.ec == std::errc() ? static_cast<std::size_t>(result.ptr - begin) : 0;
  });
}

TextReader& TextReader::operator>>(std::int32_t& value) {
  return readInteger(value);
}
TextReader& TextReader::operator>>(std::uint32_t& value) {
  return readInteger(value);
}
TextReader& TextReader::operator>>(std::int64_t& value) {
  return readInteger(value);
}
TextReader& TextReader::operator>>(double& value) {
  return readNumber(value, [](std::string_view text, double& parsed) { return parseNumber(text, parsed); });
}
TextReader& TextReader::operator>>(float& value) {
  return readNumber(value, [](std::string_view text, float& parsed) { return parseNumber(text, parsed); });
}

TextReader::Line TextReader::findLineEnd(std::size_t limit) {
  std::size_t seen = 0;
  for (;;) {
    const std::size_t length = std::min(available(), limit);
    const char* const begin = buffer_.data() + position_;
    const void* const end = length > seen ? std::memchr(begin + seen, '\n', length - seen) : nullptr;
    if (end != nullptr) return {static_cast<std::size_t>(static_cast<const char*>(end) - begin), true};
    seen = length;
    if (length == limit || !fill(length + 1)) return {length, false};
  }
}

// The bytes of `line` without the CR at its end.
std::string_view TextReader::lineText(const Line& line) const {
  std::string_view text(buffer_.data() + position_, line.length);
  if (text.ends_with('\r')) text.remove_suffix(1);
  return text;
}

bool TextReader::readLine(std::string& line, std::size_t maxChars) {
  if (failed_) return false;
  const Line found = findLineEnd(saturatedSum(maxChars, 2));
  const std::string_view text = lineText(found);
  if (failed_ || (found.length == 0 && !found.ended) || text.size() > maxChars) {
    failed_ = true;
    return false;
  }
  line.assign(text);
  position_ += found.length + (found.ended ? 1 : 0);
  return true;
}

bool TextReader::readLineCut(std::string& line, std::size_t keep) {
  if (failed_) return false;
  const Line found = findLineEnd(saturatedSum(keep, 2));
  if (failed_ || (found.length == 0 && !found.ended)) {
    failed_ = true;
    return false;
  }
  line.assign(lineText(found).substr(0, keep));
  position_ += found.length;
  skipLine();
  return !failed_;
}

void TextReader::skipLine() {
  while (!failed_) {
    const Line found = findLineEnd(std::max<std::size_t>(available(), 1));
    position_ += found.length + (found.ended ? 1 : 0);
    if (found.ended || !fill(1)) return;
  }
}

void TextReader::readLinePart(std::string* line, std::size_t maxChars) {
  if (failed_) return;
  const Line found = findLineEnd(saturatedSum(maxChars, 2));
  if (line != nullptr && found.length == 0 && !found.ended) failed_ = true;
  if (failed_) return;
  const std::string_view text = lineText(found);
  const bool whole = text.size() <= maxChars;
  if (line != nullptr) line->assign(text.substr(0, maxChars));
  position_ += whole ? found.length + (found.ended ? 1 : 0) : maxChars;
}

bool TextReader::skipPast(char stop, std::size_t maxChars) {
  for (std::size_t passed = 0; !failed_ && fill(1); ++passed) {
    const char c = buffer_[position_++];
    if (c == stop) return true;
    if (passed == maxChars) break;
  }
  failed_ = true;
  return false;
}

std::string_view TextReader::peekLine(std::size_t maxChars) {
  if (failed_) return {};
  const Line found = findLineEnd(saturatedSum(maxChars, 2));
  return lineText(found).substr(0, maxChars);
}

bool TextReader::atEnd() {
  return !fill(1);
}

std::uint64_t TextReader::remaining() const {
  return available() + unread_;
}

bool TextReader::checkCount(std::int64_t count, std::uint64_t bytesEach) {
  if (failed_) return false;
  if (count < 0 || (bytesEach > 0 && static_cast<std::uint64_t>(count) > remaining() / bytesEach)) failed_ = true;
  return !failed_;
}

}  // namespace tarvex
