#pragma once

#include "base/TextReader.h"

namespace tarvex {

inline bool isBlank(const std::string& text) {
  return text.find_first_not_of(" \t\n\v\f\r") == std::string::npos;
}

// Finishes the line behind a number that stands last on it. Anything but blanks there fails: a count that lost its
// line would else take the first digits of the next one's number. The end of the text will do.
[[nodiscard]] inline bool readLineEnd(TextReader& in) {
  constexpr std::size_t kMaxRest = 254;
  std::string rest;
  if (!in.atEnd()) in.expect("the end of the line").readLine(rest, kMaxRest);
  return in.ok() && (isBlank(rest) || in.refuse("expected the end of the line, found '" + rest + "'"));
}

// The end of a file: nothing but blanks and line ends may follow.
[[nodiscard]] inline bool readTextEnd(TextReader& in) {
  constexpr std::size_t kPart = 254;
  std::string part;
  while (in.ok() && !in.atEnd()) {
    in.readLinePart(&part, kPart);
    if (!isBlank(part)) return in.refuse("expected the end of the file, found '" + part.substr(0, 40) + "'");
  }
  return in.ok();
}

}  // namespace tarvex
