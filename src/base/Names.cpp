#include "base/Names.h"

namespace tarvex {
namespace {

// The accented letters and signs of the old set lie above 127 and are covered by that rule.
constexpr std::string_view kForbidden = "|\\!\"$%&/()=?'^[]+*@#;,:._- ";

}  // namespace

bool isForbiddenInName(char c) {
  return static_cast<unsigned char>(c) > 127 || kForbidden.find(c) != std::string_view::npos;
}

bool isForbiddenAtNameStart(char c) {
  return (c >= '0' && c <= '9') || isForbiddenInName(c);
}

bool isValidName(std::string_view name) {
  if (name.empty() || isForbiddenAtNameStart(name.front())) return false;
  for (const char c : name)
    if (isForbiddenInName(c) || c < ' ' || c == '\x7f') return false;
  return true;
}

std::string_view firstWord(std::string_view line) {
  constexpr std::string_view kSpace = " \t\n\v\f\r";
  const std::size_t first = line.find_first_not_of(kSpace);
  if (first == std::string_view::npos) return {};
  line.remove_prefix(first);
  return line.substr(0, line.find_first_of(kSpace));
}

}  // namespace tarvex
