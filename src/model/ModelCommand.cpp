#include "model/ModelCommand.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string_view>

#include "base/Paths.h"

namespace tarvex {

namespace {

constexpr std::string_view kSample = "{sample}";
constexpr std::string_view kOutput = "{output}";

bool isThere(const std::string& path) {
  return ::access(existingPath(path).c_str(), F_OK) == 0;
}

bool isPlain(const std::string& text) {
  return text.find_first_of(" \t'\"{") == std::string::npos || isThere(text);
}

// Parts words by the rules of a shell's quotes. False when a quote isn't closed; `place` is then where it opens.
bool partWords(const std::string& text, std::vector<std::string>& words, std::size_t& place) {
  char quote = '\0';
  bool inWord = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    const bool escapes = c == '\\' && quote != '\'' && i + 1 < text.size() &&
                         (quote == '\0' || text[i + 1] == '"' || text[i + 1] == '\\');
    if (quote == '\0' && (c == ' ' || c == '\t')) {
      inWord = false;
      continue;
    }
    if (!inWord) words.emplace_back();
    inWord = true;
    if (escapes) {
      words.back() += text[++i];
    } else if (quote == '\0' && (c == '\'' || c == '"')) {
      quote = c;
      place = i;
    } else if (c == quote) {
      quote = '\0';
    } else {
      words.back() += c;
    }
  }
  return quote == '\0';
}

bool replaceAll(std::string& word, std::string_view what, const std::string& by) {
  bool found = false;
  for (std::size_t at = word.find(what); at != std::string::npos; at = word.find(what, at + by.size())) {
    word.replace(at, what.size(), by);
    found = true;
  }
  return found;
}

}  // namespace

std::string alongPath(const std::string& name) {
  const char* const variable = std::getenv("PATH");
  if (name.empty() || name.find('/') != std::string::npos || variable == nullptr) return name;
  const std::string_view path = variable;
  for (std::size_t start = 0; start <= path.size();) {
    const std::size_t end = std::min(path.find(':', start), path.size());
    std::string candidate = std::string(path.substr(start, end - start)) + '/' + name;
    if (end > start && ::access(candidate.c_str(), X_OK) == 0) return candidate;
    start = end + 1;
  }
  return name;
}

std::string ModelCommand::text() const {
  std::string line = '"' + program + '"';
  for (const std::string& argument : arguments) line += " \"" + argument + '"';
  return line;
}

std::string programOf(const std::string& text) {
  if (isPlain(text)) return text;
  std::vector<std::string> words;
  std::size_t place = 0;
  return partWords(text, words, place) && !words.empty() ? alongPath(words.front()) : text;
}

bool makeModelCommand(const std::string& text, const std::string& sample, const std::string& output,
                      ModelCommand& command, std::string& message) {
  if (isPlain(text)) {
    command = {absolutePath(text), {sample}};
    return true;
  }
  std::vector<std::string> words;
  std::size_t place = 0;
  if (!partWords(text, words, place) || words.empty()) {
    message = words.empty() ? "There is no program."
                            : "The quote at character " + std::to_string(place + 1) + " isn't closed.";
    return false;
  }
  command = {absolutePath(alongPath(words.front())), {}};
  bool hasSample = false;
  for (std::size_t i = 1; i < words.size(); ++i) {
    hasSample = replaceAll(words[i], kSample, sample) || hasSample;
    replaceAll(words[i], kOutput, output);
    command.arguments.push_back(words[i]);
  }
  if (!hasSample) command.arguments.push_back(sample);
  return true;
}

}  // namespace tarvex
