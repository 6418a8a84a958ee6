// The numbers and words of a text.
#include <algorithm>
#include <charconv>

#include "base/NumberText.h"
#include "base/TextReader.h"

namespace tarvex {
namespace {

constexpr std::size_t kUsualNumber = 64;             // looked at for a number; longer ones widen the look
constexpr std::size_t kLongestNumber = 1024 * 1024;  // no sensible number is longer
constexpr std::size_t kNumberTail = 16;              // a number this near to the end of the look may go on behind it
constexpr int kUsualSpace = 2;                       // between numbers: a tab, and the end of a line
static_assert(kUsualNumber >= kUsualSpace + kShortNumberRoom);

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

}  // namespace

void TextReader::skipSpace() {
  do {
    const char* const begin = source_.held().data();
    const char* const end = begin + source_.held().size();
    const char* next = begin + position_;
    while (next != end && isSpace(*next)) ++next;
    stepStart_ = position_ = static_cast<std::size_t>(next - begin);
  } while (position_ == source_.held().size() && fill(1));
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
    const std::string_view text(source_.held().data() + position_, available());
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

std::size_t TextReader::takeShortNumbers(double* values, std::size_t count) {
  const std::string_view text = source_.held();
  std::size_t place = position_;
  std::size_t taken = 0;
  for (; taken < count && text.size() - place > kUsualNumber; ++taken) {
    std::size_t number = place;
    for (int i = 0; i < kUsualSpace && isSpace(text[number]); ++i) ++number;
    const std::size_t length = parseShortNumber(text.data() + number, values[taken]);
    if (length == 0 || !isSpace(text[number + length])) break;
    stepStart_ = number;
    place = number + length;
  }
  position_ = place;
  return taken;
}

TextReader& TextReader::readNumbers(double* values, std::size_t count) {
  if (!failed_) begin("a number");
  for (std::size_t taken = 0; taken < count && !failed_; ++taken) {
    taken += takeShortNumbers(values + taken, count - taken);
    if (taken < count) *this >> values[taken];
  }
  return *this;
}

bool TextReader::readWord(std::string_view& word, std::size_t maxChars) {
  if (failed_) return false;
  skipSpace();
  begin("a word");
  std::size_t length = 0;
  do {
    while (length < available() && !isSpace(source_.held()[position_ + length])) ++length;
    if (length > maxChars) return refuse("a word of more than " + std::to_string(maxChars) + " characters");
  } while (length == available() && fill(length + 1));
  if (failed_ || length == 0) return failStep();
  word = std::string_view(source_.held()).substr(position_, length);
  position_ += length;
  return true;
}

}  // namespace tarvex
