#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace tarvex {

// How a reader tells the user what made it fail: where, what was expected there, what stood there instead.
class ReadFailure {
 public:
  ReadFailure() = default;
  explicit ReadFailure(std::string fileName) : fileName_(std::move(fileName)) {}

  // What the next step reads, for that step alone.
  void expect(const char* what) { expected_ = what; }
  // A step begins; it reads `usual` unless expect() said better.
  void begin(const char* usual) {
    reads_ = expected_ != nullptr ? expected_ : usual;
    expected_ = nullptr;
  }
  // Why the step begun last fails on `text`, or on a line that is too long.
  std::string unlike(std::string_view text) const;
  std::string tooLong(std::size_t maxChars) const;

  // The first failure; `line` counts from 1, 0 is one of no line.
  void set(const std::string& reason, std::int64_t line);
  // "flood.fac:26: expected the mean, found 'abc'"; for a text without a file "line 26: ..."; of no line "flood.fac:
  // Permission denied".
  std::string text() const { return textOf(reason_, line_); }
  // The same of a text that the reader took, and that has no place there.
  std::string misplaced(std::string_view text, std::int64_t line) const;

 private:
  std::string textOf(const std::string& reason, std::int64_t line) const;

  std::string fileName_;  // as the caller gave it; empty for a text
  std::string reason_;
  std::int64_t line_ = 0;
  const char* expected_ = nullptr;
  const char* reads_ = "";
};

}  // namespace tarvex
