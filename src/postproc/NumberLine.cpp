#include "postproc/NumberLine.h"

#include <string>

#include "base/TextReader.h"

namespace tarvex {

namespace {

constexpr std::size_t kMaxRestChars = 4095;

}  // namespace

void finishNumberLine(TextReader& in) {
  std::string rest;
  if (in.readLine(rest, kMaxRestChars) && rest.find_first_not_of(" \t") != std::string::npos) in.setFail();
}

}  // namespace tarvex
