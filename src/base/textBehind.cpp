#include "base/textBehind.h"

#include <string_view>

#include "base/TextReader.h"

namespace tarvex {

std::string textBehind(TextReader& in) {
  constexpr std::size_t kShown = 40;  // characters; a longer word is told by the reader's own refusal
  std::string_view word;
  if (in.readWord(word, kShown))
    in.refuse("'" + std::string(word) + "' stands behind the last number and isn't read");
  else if (in.remaining() == 0)
    return {};
  return in.problem();
}

}  // namespace tarvex
