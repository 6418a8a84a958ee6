#include "base/csvText.h"

namespace tarvex {

std::string csvQuoted(std::string_view text) {
  std::string field = "\"";
  for (const char c : text) {
    if (c == '"') field += c;
    field += c;
  }
  return field + '"';
}

std::string csvText(std::string_view text) {
  return text.find_first_of(",\"\r\n") == std::string_view::npos ? std::string(text) : csvQuoted(text);
}

}  // namespace tarvex
