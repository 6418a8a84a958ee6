#include "base/TextReader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <limits>
#include <utility>

#include "base/Memory.h"
#include "base/NumberText.h"
#include "base/Paths.h"
#include "base/SystemCalls.h"
#include "base/Temporaries.h"

namespace tarvex {
namespace {

constexpr std::size_t kBlock = 256 * 1024;           // read at once
constexpr std::size_t kUsualNumber = 64;             // looked at for a number; longer ones widen the look
constexpr std::size_t kLongestNumber = 1024 * 1024;  // no sensible number is longer
constexpr std::size_t kLargestPipe = 1024UL << 20;   // a pipe's size isn't known, so its text is held whole
constexpr std::size_t kNumberTail = 16;              // a number this near to the end of the look may go on behind it
constexpr std::size_t kNoLimit = std::numeric_limits<std::size_t>::max();
constexpr std::size_t kShown = 40;  // characters of what was found instead
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

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

std::int64_t lineEnds(std::string_view text) {
  std::int64_t count = 0;
  for (std::size_t at = text.find('\n'); at != std::string_view::npos; at = text.find('\n', at + 1)) ++count;
  return count;
}

// What stands at the start of `text`, fit to be shown in a message.
std::string shown(std::string_view text) {
  const std::string_view line = text.substr(0, text.find('\n'));
  std::string result = "'";
  for (const char c : line.substr(0, kShown)) result += static_cast<unsigned char>(c) < ' ' ? ' ' : c;
  while (result.size() > 1 && result.back() == ' ') result.pop_back();
  if (result.size() == 1) return "an empty line";
  return result + (line.size() > kShown ? "...'" : "'");
}

}  // namespace

TextReader TextReader::fromFile(const std::string& path) {
  return fromFile(path, {});
}

TextReader TextReader::fromFile(const std::string& path, const Progress& progress) {
  TextReader reader;
  reader.name_ = path;
  reader.progress_ = progress;
  reader.open(existingPath(path));
  reader.skipByteOrderMark();
  return reader;
}

TextReader TextReader::fromText(std::string text) {
  TextReader reader;
  reader.buffer_ = std::move(text);
  reader.skipByteOrderMark();
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
  size_ = std::exchange(other.size_, 0);
  progress_ = std::exchange(other.progress_, {});
  fd_ = std::exchange(other.fd_, -1);
  failed_ = std::exchange(other.failed_, true);
  name_ = std::exchange(other.name_, {});
  problem_ = std::exchange(other.problem_, {});
  problemLine_ = std::exchange(other.problemLine_, 0);
  linesDropped_ = std::exchange(other.linesDropped_, 0);
  stepStart_ = std::exchange(other.stepStart_, 0);
  expected_ = std::exchange(other.expected_, nullptr);
  stepReads_ = std::exchange(other.stepReads_, "");
  return *this;
}

void TextReader::skipByteOrderMark() {
  if (!failed_ && fill(kByteOrderMark.size()) && buffer_.starts_with(kByteOrderMark)) position_ = kByteOrderMark.size();
}

TextReader& TextReader::expect(const char* what) {
  expected_ = what;
  return *this;
}

void TextReader::begin(const char* usual) {
  stepStart_ = position_;
  stepReads_ = expected_ != nullptr ? expected_ : usual;
  expected_ = nullptr;
}

bool TextReader::failStep() {
  if (failed_) return false;
  const std::string_view found = std::string_view(buffer_).substr(stepStart_);
  return refuse("expected " + std::string(stepReads_) + ", found " +
                (found.empty() ? "the end of the file" : shown(found)));
}

bool TextReader::failSystem(int error) {
  return failFile(std::strerror(error));
}

bool TextReader::failFile(const std::string& reason) {
  if (!failed_) problem_ = reason;
  failed_ = true;
  return false;
}

bool TextReader::refuse(const std::string& reason) {
  if (!failed_) {
    problem_ = reason;
    problemLine_ = line();
  }
  failed_ = true;
  return false;
}

std::int64_t TextReader::line() const {
  return 1 + linesDropped_ + lineEnds(std::string_view(buffer_).substr(0, stepStart_));
}

std::string TextReader::problem() const {
  const std::string_view found = std::string_view(buffer_).substr(std::min(stepStart_, buffer_.size()));
  const std::string reason = failed_ ? problem_ : "not expected here: " + shown(found);
  const std::int64_t at = failed_ ? problemLine_ : line();
  const std::string number = at > 0 ? std::to_string(at) : "";
  if (name_.empty()) return at > 0 ? "line " + number + ": " + reason : reason;
  return name_ + (at > 0 ? ":" + number : "") + ": " + reason;
}

std::string withProblem(const std::string& message, const TextReader& in) {
  return message + '\n' + in.problem();
}

void TextReader::open(const std::string& path) {
  // Without O_NONBLOCK a fifo would be waited for its writer already here.
  fd_ = SystemCalls::current().open(path.c_str(), O_RDONLY | O_NONBLOCK, 0);
  struct stat status {};
  const bool known = fd_ >= 0 && ::fstat(fd_, &status) == 0;
  if (!known || S_ISDIR(status.st_mode)) {
    failSystem(known ? EISDIR : errno);
    return closeFile();
  }
  if (S_ISREG(status.st_mode))
    unread_ = size_ = static_cast<std::uint64_t>(status.st_size);
  else if (!S_ISFIFO(status.st_mode) || awaitWriter())
    readWhole(kLargestPipe);
}

// A fifo that nobody writes to would hold the program for ever: it is waited for its writer, which may have been
// started a moment later, and refused then. What the first look finds is taken.
bool TextReader::awaitWriter() {
  constexpr int kTries = 100;
  constexpr useconds_t kSlice = 10'000;
  buffer_.resize(kBlock);
  for (int i = 0; i < kTries && !Temporaries::cancelled(); ++i) {
    if (i > 0) ::usleep(kSlice);
    const ssize_t got = SystemCalls::current().read(fd_, buffer_.data(), buffer_.size());
    if (got == 0 || (got < 0 && errno == EINTR)) continue;
    if (got < 0 && errno != EAGAIN) break;
    buffer_.resize(static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    return true;
  }
  buffer_.clear();
  closeFile();
  return failFile("nobody writes to it");
}

// remaining() must be known before the first count is read. From here on a read may wait.
void TextReader::readWhole(std::size_t limit) {
  static_cast<void>(::fcntl(fd_, F_SETFL, 0) == 0);
  while (buffer_.size() <= limit)
    if (!appendBlock(kBlock)) return;
  closeFile();
  buffer_.clear();
  failSystem(EFBIG);
}

void TextReader::closeFile() {
  if (fd_ >= 0) SystemCalls::current().close(fd_);
  fd_ = -1;
  unread_ = 0;
}

bool TextReader::appendBlock(std::size_t size) {
  const std::size_t old = buffer_.size();
  if (!fitsInMemory([&] { buffer_.resize(old + size); })) {
    failSystem(ENOMEM);
    closeFile();
    return false;
  }
  ssize_t got = -1;
  do got = SystemCalls::current().read(fd_, buffer_.data() + old, size);
  while (got < 0 && errno == EINTR);
  buffer_.resize(old + static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
  if (got <= 0) {
    if (got < 0) failSystem(errno);
    closeFile();
    return false;
  }
  unread_ -= std::min(unread_, static_cast<std::uint64_t>(got));
  if (progress_.report(size_ - unread_, size_)) return true;
  closeFile();
  return refuse("stopped");
}

bool TextReader::fillMore(std::size_t wanted) {
  if (fd_ < 0) return false;
  // The step in progress keeps its start, for the description of its failure.
  const std::size_t dropped = std::min(stepStart_, position_);
  linesDropped_ += lineEnds(std::string_view(buffer_).substr(0, dropped));
  buffer_.erase(0, dropped);
  position_ -= dropped;
  stepStart_ -= dropped;
  wanted += position_;
  while (buffer_.size() < wanted) {
    // A small file gets a small buffer; the byte more finds its end.
    const auto rest = static_cast<std::size_t>(std::min<std::uint64_t>(unread_ + 1, kBlock));
    if (!appendBlock(std::max(rest, wanted - buffer_.size()))) return false;
  }
  return true;
}

void TextReader::skipSpace() {
  do {
    const char* const begin = buffer_.data();
    const char* const end = begin + buffer_.size();
    const char* next = begin + position_;
    while (next != end && isSpace(*next)) ++next;
    stepStart_ = position_ = static_cast<std::size_t>(next - begin);
  } while (position_ == buffer_.size() && fill(1));
}

// parse(text, value) gives the bytes taken from the start of `text`, 0 for none.
template <class Number, class Parse>
TextReader& TextReader::readNumber(Number& value, const char* usual, Parse parse) {
  if (failed_) return *this;
  skipSpace();
  begin(usual);
  std::size_t wanted = kUsualNumber;
  for (;;) {
    const bool more = fill(wanted);
    const std::string_view text(buffer_.data() + position_, available());
    Number parsed{};
    const std::size_t taken = failed_ ? 0 : parse(text, parsed);
    if (more && (taken == 0 || text.size() - taken < kNumberTail) && isUnfinishedNumber(text)) {
      wanted = 2 * text.size();
      if (wanted <= kLongestNumber) continue;
      failStep();
      return *this;
    }
    if (taken == 0) {
      failStep();
    } else {
      position_ += taken;
      value = parsed;
    }
    return *this;
  }
}

template <class Integer>
TextReader& TextReader::readInteger(Integer& value) {
  return readNumber(value, "a whole number", [](std::string_view text, Integer& parsed) -> std::size_t {
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
  return readNumber(value, "a number", [](std::string_view text, double& parsed) { return parseNumber(text, parsed); });
}
TextReader& TextReader::operator>>(float& value) {
  return readNumber(value, "a number", [](std::string_view text, float& parsed) { return parseNumber(text, parsed); });
}

bool TextReader::readWord(std::string_view& word, std::size_t maxChars) {
  if (failed_) return false;
  skipSpace();
  begin("a word");
  std::size_t length = 0;
  do {
    while (length < available() && !isSpace(buffer_[position_ + length])) ++length;
    if (length > maxChars) return refuse("a word of more than " + std::to_string(maxChars) + " characters");
  } while (length == available() && fill(length + 1));
  if (failed_ || length == 0) return failStep();
  word = std::string_view(buffer_).substr(position_, length);
  position_ += length;
  return true;
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

bool TextReader::refuseLongLine(std::size_t maxChars) {
  return refuse("expected " + std::string(stepReads_) + ", found a line of more than " + std::to_string(maxChars) +
                " characters");
}

bool TextReader::readLine(std::string& line, std::size_t maxChars) {
  if (failed_) return false;
  begin("a line");
  const Line found = findLineEnd(saturatedSum(maxChars, 2));
  if (failed_ || (found.length == 0 && !found.ended)) return failStep();
  const std::string_view text = lineText(found);
  if (text.size() > maxChars) return refuseLongLine(maxChars);
  line.assign(text);
  position_ += found.length + (found.ended ? 1 : 0);
  return true;
}

bool TextReader::readLineCut(std::string& line, std::size_t keep) {
  if (failed_) return false;
  begin("a line");
  const Line found = findLineEnd(saturatedSum(keep, 2));
  if (failed_ || (found.length == 0 && !found.ended)) return failStep();
  line.assign(lineText(found).substr(0, keep));
  position_ += found.length;
  skipLine();
  return !failed_;
}

void TextReader::skipLine() {
  while (!failed_) {
    begin("a line");
    const Line found = findLineEnd(std::max<std::size_t>(available(), 1));
    position_ += found.length + (found.ended ? 1 : 0);
    if (found.ended || !fill(1)) return;
  }
}

void TextReader::readLinePart(std::string* line, std::size_t maxChars) {
  if (failed_) return;
  begin("a line");
  const Line found = findLineEnd(saturatedSum(maxChars, 2));
  if (line != nullptr && found.length == 0 && !found.ended) failStep();
  if (failed_) return;
  const std::string_view text = lineText(found);
  const bool whole = text.size() <= maxChars;
  if (line != nullptr) line->assign(text.substr(0, maxChars));
  position_ += whole ? found.length + (found.ended ? 1 : 0) : maxChars;
}

bool TextReader::skipPast(char stop, std::size_t maxChars) {
  if (failed_) return false;
  begin("the rest of a section");
  for (std::size_t passed = 0; !failed_ && fill(1); ++passed) {
    const char c = buffer_[position_++];
    if (c == stop) return true;
    if (passed == maxChars) break;
  }
  return failStep();
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
  if (count < 0) return refuse("a count of " + std::to_string(count));
  if (bytesEach > 0 && static_cast<std::uint64_t>(count) > remaining() / bytesEach)
    return refuse("a count of " + std::to_string(count) + ", more than the rest of the file holds");
  return true;
}

}  // namespace tarvex
