#include "base/TextRules.h"

#include "base/Names.h"
#include "base/TextReader.h"
#include "base/TextWriter.h"

namespace tarvex {
namespace {

constexpr std::size_t kShownOfName = 40;  // characters of a refused name

std::string shownName(std::string_view name) {
  std::string result = "'";
  for (const char c : name.substr(0, kShownOfName)) result += static_cast<unsigned char>(c) < ' ' ? ' ' : c;
  return result + (name.size() > kShownOfName ? "...'" : "'");
}

template <class Rule>
void writeLine(const Rule& rule, TextWriter& out, std::string_view text) {
  const std::string problem = rule.problem(text);
  if (!problem.empty()) out.refuse(problem);
  out << text << '\n';
}

}  // namespace

std::string LineRule::problem(std::string_view text) const {
  // A CR at the end of a line would be taken for a part of the line end.
  if (text.find_first_of("\n\r") != std::string_view::npos) return std::string(what) + " holds a line end";
  if (text.size() <= maxChars) return {};
  return std::string(what) + " has " + std::to_string(text.size()) + " characters, more than " +
         std::to_string(maxChars);
}

void LineRule::write(TextWriter& out, std::string_view text) const {
  writeLine(*this, out, text);
}

bool LineRule::read(TextReader& in, std::string& text) const {
  if (!in.expect(what).readLine(text, maxChars)) return false;
  const std::string reason = problem(text);  // a CR inside of the line
  return reason.empty() || in.refuse(reason);
}

std::string NameRule::problem(std::string_view name) const {
  const std::string subject = std::string(what) + ' ' + shownName(name);
  if (name.empty()) return std::string(what) + " is empty";
  if (!isValidName(name)) return subject + " is no name: letters and digits only, a letter first";
  if (name.size() <= maxChars) return {};
  return subject + " has " + std::to_string(name.size()) + " characters, more than " + std::to_string(maxChars);
}

void NameRule::write(TextWriter& out, std::string_view name) const {
  writeLine(*this, out, name);
}

bool NameRule::read(TextReader& in, std::string& name) const {
  std::string line;
  if (!in.expect(what).readLine(line, maxChars)) return false;
  const std::string word(firstWord(line));
  const std::string reason = problem(word);
  if (!reason.empty()) return in.refuse(reason);
  name = word;
  return true;
}

}  // namespace tarvex
