#include "postproc/NumberLine.h"

#include <string>

#include "base/TextReader.h"

namespace tarvex {

namespace {

constexpr std::size_t kMaxRestChars = 4095;
constexpr std::size_t kShown = 40;  // characters of what is refused

}  // namespace

void finishNumberLine(TextReader& in) {
  std::string rest;
  if (in.expect("the end of the line").readLine(rest, kMaxRestChars) &&
      rest.find_first_not_of(" \t") != std::string::npos)
    in.refuse("expected the end of the line, found '" + rest.substr(0, kShown) + "'");
}

}  // namespace tarvex
