#include "base/ReadFailure.h"

namespace tarvex {
namespace {

constexpr std::size_t kShown = 40;  // characters of what was found instead

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

std::string ReadFailure::unlike(std::string_view text) const {
  return "expected " + std::string(reads_) + ", found " + (text.empty() ? "the end of the file" : shown(text));
}

std::string ReadFailure::tooLong(std::size_t maxChars) const {
  return "expected " + std::string(reads_) + ", found a line of more than " + std::to_string(maxChars) + " characters";
}

void ReadFailure::set(const std::string& reason, std::int64_t line) {
  reason_ = reason;
  line_ = line;
}

std::string ReadFailure::misplaced(std::string_view text, std::int64_t line) const {
  return textOf("not expected here: " + shown(text), line);
}

std::string ReadFailure::textOf(const std::string& reason, std::int64_t line) const {
  const std::string number = line > 0 ? std::to_string(line) : "";
  if (fileName_.empty()) return line > 0 ? "line " + number + ": " + reason : reason;
  return fileName_ + (line > 0 ? ":" + number : "") + ": " + reason;
}

}  // namespace tarvex
