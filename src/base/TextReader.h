#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/Progress.h"
#include "base/ReadFailure.h"
#include "base/TextSource.h"

namespace tarvex {

// Reads the text files of the system by the stream rules that the formats were made for. The fail state is sticky: once
// a step has failed every later step fails and leaves its argument alone; callers test it after each step.
//
// The first failure is described: file, line, what stood there and what was expected. A reader's caller shows that
// under the message of its layer.
//
// Numeric steps skip white space first and stop at the first character that doesn't fit. A line ends at LF, a CR before
// it is dropped, and a last line without LF is complete. `inf` and `nan` count as numbers, with a sign too. A byte
// order mark at the start of the text is skipped.
class TextReader {
 public:
  // A path that doesn't exist as it stands is tried with '/' for '\'. A file that can't be opened or read, a directory
  // included, gives a failed reader; so does a fifo that nobody writes to within a second.
  // Of a file that may be long `progress` hears, block by block, how much of it is taken; a stop is a failed read.
  static TextReader fromFile(const std::string& path, const Progress& progress = {});
  static TextReader fromText(std::string text);
  TextReader(TextReader&&) noexcept;
  TextReader& operator=(TextReader&&) noexcept;

  bool ok() const { return !failed_; }
  bool fail() const { return failed_; }

  // Says what the next step reads ("the number of runs"), for the description of its failure. Holds for that step
  // alone.
  TextReader& expect(const char* what);
  // Fails because of what the last step read. `reason` says the rule and the value ("the number of runs must be at
  // least 1, not -3"). Always false; an earlier failure keeps its own description.
  bool refuse(const std::string& reason);
  // "flood.fac:26: expected the mean, found 'abc'"; for a text without a file "line 26: ..."; for a file that the
  // system doesn't give "flood.fac: Permission denied". While ok() it says that line and text weren't expected there.
  std::string problem() const;
  // The line, counted from 1, on which the last step began.
  std::int64_t line() const;

  // `>>` of the formats. A value outside the type's range fails.
  TextReader& operator>>(std::int32_t& value);
  TextReader& operator>>(std::uint32_t& value);
  TextReader& operator>>(std::int64_t& value);
  TextReader& operator>>(double& value);
  TextReader& operator>>(float& value);
  // `count` numbers one after the other, as so many `>>` read them; "expect" holds for none of them. After a failure
  // those before it are there.
  TextReader& readNumbers(double* values, std::size_t count);

  // The next word, which is what stands between white space; one of more than `maxChars` characters fails. `word` is
  // valid until the next call.
  bool readWord(std::string_view& word, std::size_t maxChars);
  // The rest of the current line without its end, at most `maxChars` characters: a longer line fails, and so does a
  // read at the end of the text. Every byte but LF (and a CR before it) belongs to the line.
  bool readLine(std::string& line, std::size_t maxChars);
  // The same, of which only the first `keep` characters are handed out; the line may be of any length.
  bool readLineCut(std::string& line, std::size_t keep);
  // Finishes the current line, whatever its length. At the end of the text it does nothing.
  void skipLine();
  // Takes up to `maxChars` characters of the current line; takes the line's end too when it is reached within them,
  // else leaves the rest of the line to be read. The end itself doesn't count. With `line` null the characters are
  // dropped, and the end of the text is no failure.
  void readLinePart(std::string* line, std::size_t maxChars);
  // Takes characters up to and including `stop`, over line ends. Fails when more than `maxChars` come before it.
  bool skipPast(char stop, std::size_t maxChars);

  // The current line without its end, not taken; at most `maxChars` characters of it are shown. Valid until the next
  // call.
  std::string_view peekLine(std::size_t maxChars);
  // True when no byte is left.
  bool atEnd();

  // Bytes of the file or text that have not been taken: what bounds every count that is read from it.
  std::uint64_t remaining() const;
  // Fails unless `count` items of at least `bytesEach` bytes could still follow. Counts below 0 fail.
  bool checkCount(std::int64_t count, std::uint64_t bytesEach);

 private:
  struct Line {
    std::size_t length;  // bytes before the LF, as far as they were looked at
    bool ended;          // an LF stands behind them
  };

  TextReader() = default;
  void skipByteOrderMark();
  void begin(const char* usual);  // a step begins here; `usual` says what it reads unless expect() was called
  bool failStep();                // the step begun last failed; always false
  bool failSource();              // the source gave no more although there is more; always false
  std::size_t available() const { return source_.held().size() - position_; }
  // What is held, from the step begun last on.
  std::string_view stepText() const;
  // Makes `wanted` bytes available from position_ if the source has them.
  bool fill(std::size_t wanted) { return available() >= wanted || fillMore(wanted); }
  bool fillMore(std::size_t wanted);
  void skipSpace();
  Line findLineEnd(std::size_t limit);
  std::string_view lineText(const Line& line) const;
  template <class Number, class Parse>
  TextReader& readNumber(Number& value, const char* usual, Parse parse);
  template <class Integer>
  TextReader& readInteger(Integer& value);
  // Of `count` numbers those at the start that are short and parted as in a table, while the text is held.
  std::size_t takeShortNumbers(double* values, std::size_t count);

  TextSource source_;
  std::size_t position_ = 0;   // in what the source holds
  std::size_t stepStart_ = 0;  // there, of the step begun last
  bool failed_ = false;
  ReadFailure failure_;  // where it has failed
};

// `message` with, on the line below it, what made `in` fail: how every file that is refused is told.
std::string withProblem(const std::string& message, const TextReader& in);

}  // namespace tarvex
