#include "postproc/VariableTrial.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include "model/EquationTrial.h"
#include "postproc/OutputReference.h"
#include "postproc/OutputVariables.h"

namespace tarvex {

namespace {

bool standsInWords(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

// The text as an equation can be made of it: every reference is one name of the same length, so that places stay.
struct SameLength {
  std::string program;
  std::vector<std::string> names;
  std::size_t badBracket = std::string::npos;  // where a bracket stands that names no time
};

std::string asName(std::string reference) {
  for (char& c : reference)
    if (!standsInWords(c)) c = '_';
  if (std::isdigit(static_cast<unsigned char>(reference.front())) != 0) reference.front() = '_';
  return reference;
}

SameLength sameLength(const std::string& text, const std::vector<std::string>& outputNames) {
  SameLength made;
  for (std::size_t position = 0; position < text.size();) {
    const std::size_t start = position;
    OutputReference reference;
    const auto parsed = OutputReference::parse(text, outputNames, position, reference);
    if (parsed == OutputReference::Parsed::kBadBracket) {
      made.badBracket = text.find('[', start);
      return made;
    }
    if (parsed == OutputReference::Parsed::kReference) {
      made.names.push_back(asName(text.substr(start, position - start)));
      made.program += made.names.back();
      continue;
    }
    position = start + 1;
    while (standsInWords(text[start]) && position < text.size() && standsInWords(text[position])) ++position;
    made.program += text.substr(start, position - start);
  }
  return made;
}

// Names that the text assigns itself.
std::vector<std::string> assignedIn(const std::string& program) {
  std::vector<std::string> names;
  for (std::size_t i = 0; i < program.size(); ++i) {
    if (!standsInWords(program[i])) continue;
    std::size_t end = i;
    while (end < program.size() && standsInWords(program[end])) ++end;
    const std::size_t sign = program.find_first_not_of(' ', end);
    if (sign != std::string::npos && program[sign] == '=' && program.substr(sign, 2) != "==")
      names.push_back(program.substr(i, end - i));
    i = end - 1;
  }
  return names;
}

}  // namespace

VariableTrial tryVariable(const std::string& text, const std::vector<std::string>& outputNames) {
  VariableTrial trial{OutputVariables::check(text, outputNames)};
  if (trial.reason.empty()) return trial;
  const bool isExpression = trial.reason.starts_with(' ');  // what is said of a name says why
  const SameLength made = sameLength(text, outputNames);
  if (made.badBracket != std::string::npos) {
    trial.place = std::min(made.badBracket + 1, text.size());
    if (isExpression) trial.reason = "a bracket holds a time or the word max";
    return trial;
  }
  const EquationTrial equation = tryEquation(made.program, made.names, assignedIn(made.program));
  if (equation.outcome == Trial::kGood) return trial;
  trial.place = std::min(equation.place, text.size());
  // What follows shows the equation, which nobody wrote.
  if (isExpression) trial.reason = equation.reason.substr(0, equation.reason.find(" of '"));
  return trial;
}

}  // namespace tarvex
