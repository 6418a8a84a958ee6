#include "base/TextReader.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

#include "base/Paths.h"

namespace tarvex {
namespace {

constexpr std::size_t kNoLimit = std::numeric_limits<std::size_t>::max();
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::size_t saturatedSum(std::size_t a, std::size_t b) {
  return a > kNoLimit - b ? kNoLimit : a + b;
}

}  // namespace

TextReader TextReader::fromFile(const std::string& path, const Progress& progress) {
  TextReader reader;
  reader.failure_ = ReadFailure(path);
  if (!reader.source_.open(existingPath(path), progress)) reader.failSource();
  reader.skipByteOrderMark();
  return reader;
}

TextReader TextReader::fromText(std::string text) {
  TextReader reader;
  reader.source_ = TextSource(std::move(text));
  reader.skipByteOrderMark();
  return reader;
}

TextReader::TextReader(TextReader&& other) noexcept {
  *this = std::move(other);
}

TextReader& TextReader::operator=(TextReader&& other) noexcept {
  if (this == &other) return *this;
  source_ = std::exchange(other.source_, {});
  position_ = std::exchange(other.position_, 0);
  stepStart_ = std::exchange(other.stepStart_, 0);
  failed_ = std::exchange(other.failed_, true);
  failure_ = std::exchange(other.failure_, {});
  return *this;
}

void TextReader::skipByteOrderMark() {
  if (!failed_ && fill(kByteOrderMark.size()) && source_.held().starts_with(kByteOrderMark))
    position_ = kByteOrderMark.size();
}

TextReader& TextReader::expect(const char* what) {
  failure_.expect(what);
  return *this;
}

void TextReader::begin(const char* usual) {
  stepStart_ = position_;
  failure_.begin(usual);
}

std::string_view TextReader::stepText() const {
  return std::string_view(source_.held()).substr(std::min(stepStart_, source_.held().size()));
}

bool TextReader::failStep() {
  return !failed_ && refuse(failure_.unlike(stepText()));
}

bool TextReader::failSource() {
  if (!failed_) {
    if (source_.error() != 0) failure_.set(source_.problem(), 0);
    if (source_.stopped()) failure_.set(kStoppedText, line());
  }
  failed_ = true;
  return false;
}

bool TextReader::refuse(const std::string& reason) {
  if (!failed_) failure_.set(reason, line());
  failed_ = true;
  return false;
}

std::int64_t TextReader::line() const {
  return source_.lineOf(stepStart_);
}

std::string TextReader::problem() const {
  return failed_ ? failure_.text() : failure_.misplaced(stepText(), line());
}

std::string withProblem(const std::string& message, const TextReader& in) {
  return message + '\n' + in.problem();
}

bool TextReader::fillMore(std::size_t wanted) {
  if (!source_.hasMore()) return false;
  // The step in progress keeps its start, for the description of its failure.
  const std::size_t dropped = std::min(stepStart_, position_);
  source_.drop(dropped);
  position_ -= dropped;
  stepStart_ -= dropped;
  if (source_.hold(wanted + position_)) return true;
  return (source_.error() != 0 || source_.stopped()) && failSource();
}

TextReader::Line TextReader::findLineEnd(std::size_t limit) {
  std::size_t seen = 0;
  for (;;) {
    const std::size_t length = std::min(available(), limit);
    const char* const begin = source_.held().data() + position_;
    const void* const end = length > seen ? std::memchr(begin + seen, '\n', length - seen) : nullptr;
    if (end != nullptr) return {static_cast<std::size_t>(static_cast<const char*>(end) - begin), true};
    seen = length;
    if (length == limit || !fill(length + 1)) return {length, false};
  }
}

// The bytes of `line` without the CR at its end.
std::string_view TextReader::lineText(const Line& line) const {
  std::string_view text(source_.held().data() + position_, line.length);
  if (text.ends_with('\r')) text.remove_suffix(1);
  return text;
}

bool TextReader::readLine(std::string& line, std::size_t maxChars) {
  if (failed_) return false;
  begin("a line");
  const Line found = findLineEnd(saturatedSum(maxChars, 2));
  if (failed_ || (found.length == 0 && !found.ended)) return failStep();
  const std::string_view text = lineText(found);
  if (text.size() > maxChars) return refuse(failure_.tooLong(maxChars));
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
    const char c = source_.held()[position_++];
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
  return available() + source_.unread();
}

bool TextReader::checkCount(std::int64_t count, std::uint64_t bytesEach) {
  if (failed_) return false;
  if (count < 0) return refuse("a count of " + std::to_string(count));
  if (bytesEach > 0 && static_cast<std::uint64_t>(count) > remaining() / bytesEach)
    return refuse("a count of " + std::to_string(count) + ", more than the rest of the file holds");
  return true;
}

}  // namespace tarvex
