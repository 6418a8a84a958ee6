#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/Progress.h"

namespace tarvex {

// Writes the text files of the system: integers in decimal, doubles and floats as "%g" does at the precision in force
// (6 at first), always in the C locale, lines ended by LF.
//
// A writer on a file fills a temporary file beside the target; only commit() puts it in the target's place, by rename
// after a flush to disk. Until then, and after any failure, the old file is untouched. A writer without a path
// collects text in memory.
class TextWriter {
 public:
  TextWriter();                                  // in memory
  explicit TextWriter(const std::string& path);  // onto a file; ok() tells whether the temporary could be made
  ~TextWriter();                                 // drops what was not committed
  TextWriter(const TextWriter&) = delete;
  TextWriter& operator=(const TextWriter&) = delete;

  TextWriter& operator<<(std::string_view text);
  TextWriter& operator<<(const char* text) { return *this << std::string_view(text); }
  TextWriter& operator<<(char c);
  TextWriter& operator<<(double value);
  TextWriter& operator<<(float value) { return *this << static_cast<double>(value); }
  template <std::integral Integer>
  requires(!std::same_as<Integer, char> && !std::same_as<Integer, bool>) TextWriter& operator<<(Integer value) {
    return writeInteger(static_cast<std::int64_t>(value));
  }
  // `count` doubles, each followed by `after`, and by a line end behind each `columns` of them; 0: none.
  TextWriter& writeNumbers(const double* values, std::size_t count, char after, std::size_t columns = 0);

  // `progress` hears, block by block, how much of about `bytes` is written. A stop makes the writer fail.
  void watch(const Progress& progress, std::uint64_t bytes);

  // Significant digits of the doubles that follow. Returns the digits in force before.
  int setPrecision(int digits);

  [[nodiscard]] bool ok() const { return error_ == 0; }
  // "results/a.sam: No space left on device", once not ok(): what stands under the message of whoever writes.
  std::string problem() const;
  // Makes the writer fail because of what it was to write: `reason` says the rule and the value ("the note holds a line
  // end"), or why the source of the text can't deliver it. Always false; an earlier failure keeps its own description.
  bool refuse(const std::string& reason);

  // Flushes to disk and moves the text into the target's place. False on any failure so far or now: the temporary file
  // is then removed and the old file stands. Nothing may be written afterwards. In memory: ok().
  [[nodiscard]] bool commit();

  // What was written so far. Requires: a writer in memory.
  const std::string& text() const { return buffer_; }

 private:
  TextWriter& writeInteger(std::int64_t value);
  void setError(int error);  // an errno
  void flush();
  void discard();

  std::string buffer_;
  std::string name_;       // of the target as the caller gave it
  std::string target_;     // empty: in memory
  std::string temporary_;  // empty: written in place (the target is no regular file)
  std::string refusal_;    // of refuse()
  int fd_ = -1;
  int error_ = 0;
  int precision_ = 6;
  Progress progress_;
  std::uint64_t written_ = 0;
  std::uint64_t expected_ = 0;  // bytes in all
};

// `message` with, on the line below it, what made `out` fail: how every file that can't be written is told.
std::string withProblem(const std::string& message, const TextWriter& out);

// Why a writer on `path` couldn't put a file there now ("a.sam: Permission denied"); empty when the directory takes a
// new file and an existing file may be written. Nothing is changed.
std::string whyNotWritable(const std::string& path);
inline bool canWriteFile(const std::string& path) {
  return whyNotWritable(path).empty();
}

}  // namespace tarvex
