#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tarvex {

class TextReader;
class TextWriter;

// What a text that has a line of a file to itself may be: at most so many characters and no line end, so that it comes
// back as it is. The setter that takes such a text, its writer and its reader ask the same rule.
struct LineRule {
  const char* what;      // the text in messages: "the note"
  std::size_t maxChars;  // without the line end

  // Why `text` can't stand there ("the note has 300 characters, more than 254"); empty when it can.
  std::string problem(std::string_view text) const;
  // The text with its line end. What the rule refuses fails the writer: nothing is cut.
  void write(TextWriter& out, std::string_view text) const;
  // The next line, whole.
  bool read(TextReader& in, std::string& text) const;
};

// The same for a name: letters and digits in ASCII, a letter first, as base/Names.h has it.
struct NameRule {
  const char* what;  // "the factor name"
  std::size_t maxChars;

  std::string problem(std::string_view name) const;
  void write(TextWriter& out, std::string_view name) const;
  // The first word of the next line.
  bool read(TextReader& in, std::string& name) const;
};

}  // namespace tarvex
