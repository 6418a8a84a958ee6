#pragma once

#include "base/TextReader.h"

namespace tarvex {

// Finishes the line behind a number that stands last on it. Anything but blanks there fails: a count that lost its
// line would else take the first digits of the next one's number. The end of the text will do.
inline bool readLineEnd(TextReader& in) {
  constexpr std::size_t kMaxRest = 254;
  std::string rest;
  if (!in.atEnd()) in.readLine(rest, kMaxRest);
  if (rest.find_first_not_of(" \t") != std::string::npos) in.setFail();
  return in.ok();
}

}  // namespace tarvex
