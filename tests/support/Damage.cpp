#include "support/Damage.h"

#include <cctype>

#include "support/TextFiles.h"

namespace tarvex::test {

namespace {

using Use = std::function<void(const std::string&, const std::string&)>;

std::string joined(const std::vector<std::string>& lines) {
  std::string text;
  for (std::size_t i = 0; i < lines.size(); ++i) text += (i == 0 ? "" : "\n") + lines[i];
  return text;
}

bool isNumberCharacter(char c) {
  return std::isdigit(static_cast<unsigned char>(c)) != 0 || c == '.' || c == '-' || c == '+' || c == 'e';
}

// Each run of characters of a number that holds a digit, replaced in turn.
void replaceNumbers(const std::string& text, const Use& use) {
  std::size_t line = 1;
  for (std::size_t start = 0; start < text.size();) {
    if (text[start] == '\n') ++line;
    std::size_t end = start;
    bool digits = false;
    for (; end < text.size() && isNumberCharacter(text[end]); ++end)
      digits = digits || std::isdigit(static_cast<unsigned char>(text[end])) != 0;
    if (digits)
      for (const char* other : {"word", "1e999", "2147483647", "99999999999999999999", "-1"})
        use("a number of line " + std::to_string(line) + " becomes " + other,
            text.substr(0, start) + other + text.substr(end));
    start = end == start ? start + 1 : end;
  }
}

}  // namespace

void forEachDamage(const std::string& text, const Use& use) {
  const std::vector<std::string> lines = splitLines(text);
  std::size_t offset = 0;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const std::string at = " line " + std::to_string(i + 1);
    if (i + 1 < lines.size()) {
      use("cut before" + at, text.substr(0, offset));
      use("cut inside" + at, text.substr(0, offset + lines[i].size() / 2));
    }
    std::vector<std::string> changed = lines;
    for (const char filling : {'x', '1', '\t'}) {
      changed[i] = std::string(5000, filling);
      use("long" + at, joined(changed));
    }
    changed.erase(changed.begin() + static_cast<std::ptrdiff_t>(i));
    use("without" + at, joined(changed));
    offset += lines[i].size() + 1;
  }
  replaceNumbers(text, use);
  std::string rubbish(4096, '\0');
  for (std::size_t k = 0; k < rubbish.size(); ++k) rubbish[k] = static_cast<char>(k * 131 + k / 7);
  use("rubbish", rubbish);
  use("nothing", "");
}

}  // namespace tarvex::test
