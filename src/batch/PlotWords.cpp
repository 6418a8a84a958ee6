#include "batch/PlotWords.h"

#include "base/NumberText.h"
#include "plots/RunTable.h"

namespace tarvex {

std::vector<std::string> splitList(const std::string& list) {
  std::vector<std::string> words(1);
  int depth = 0;
  for (const char c : list) {
    if (c == '(' || c == '[') ++depth;
    if ((c == ')' || c == ']') && depth > 0) --depth;
    if (c == ',' && depth == 0)
      words.emplace_back();
    else
      words.back() += c;
  }
  for (std::string& word : words) {
    word.erase(word.find_last_not_of(" \t") + 1);
    word.erase(0, word.find_first_not_of(" \t"));
  }
  std::erase(words, std::string());
  return words;
}

std::vector<std::string> splitLists(const std::vector<std::string>& lists) {
  std::vector<std::string> words;
  for (const std::string& list : lists)
    for (std::string& word : splitList(list)) words.push_back(std::move(word));
  return words;
}

bool parseRange(const std::string& text, NamedRange& range, std::string& message) {
  // An expression may hold both signs: the last ones count.
  const std::size_t colon = text.rfind(':');
  const std::size_t equals = text.rfind('=', colon);
  NamedRange parsed;
  if (colon == std::string::npos || equals == std::string::npos || equals == 0 ||
      !isNumber(text.substr(equals + 1, colon - equals - 1), parsed.lower) ||
      !isNumber(text.substr(colon + 1), parsed.upper)) {
    message = "'" + text + "' is no range: NAME=LOWER:UPPER is one.";
    return false;
  }
  if (const std::string_view problem = rangeProblem(parsed.lower, parsed.upper); !problem.empty()) {
    message = problem;
    return false;
  }
  parsed.name = text.substr(0, equals);
  range = std::move(parsed);
  return true;
}

}  // namespace tarvex
