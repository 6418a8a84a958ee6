#include "factors/Factor.h"

#include <cmath>

#include "base/NumberText.h"
#include "base/TextReader.h"
#include "base/TextWriter.h"

namespace tarvex {
namespace {

constexpr std::int32_t kPlainType = -1;  // the root class has no code of its own

}  // namespace

std::unique_ptr<Factor> Factor::clone() const {
  return std::unique_ptr<Factor>(new Factor(*this));
}

std::int32_t Factor::getType() const {
  return kPlainType;
}

std::vector<Parameter> Factor::parameters() const {
  return {};
}

std::string Factor::parameterProblem() const {
  if (const char* text = brokenRule()) return text;
  for (const Parameter& parameter : parameters()) {
    if (!std::isfinite(parameter.value))
      return std::string(parameter.name) + " is not a finite number: " + numberText(parameter.value);
  }
  return {};
}

bool Factor::setName(const std::string& text) {
  if (!accept(kNameRule.problem(text))) return false;
  name = text;
  return true;
}

bool Factor::setNote(const std::string& text) {
  if (!accept(kNoteRule.problem(text))) return false;
  note = text;
  return true;
}

bool Factor::accept(const char* problem) {
  if (problem == nullptr || *problem == '\0') return true;
  errorText = problem;
  return false;
}

bool Factor::assign(double& field, double value, const char* problem) {
  if (!accept(problem)) return false;
  field = value;
  return true;
}

void Factor::write(TextWriter& out) const {
  out << typeName << '\n';
  kNameRule.write(out, name);
  kNoteRule.write(out, note);
  out << status;
  writeParameters(out);
}

void Factor::read(TextReader& in) {
  std::string readName;
  std::string readNote;
  if (!kNameRule.read(in, readName) || !kNoteRule.read(in, readNote)) return;
  in.expect("the status of the factor, a whole number") >> status;
  const std::string_view next = in.peekLine(1);
  if (!next.empty() && next[0] != '\t' && next[0] != ' ')
    in.refuse("the status of the factor must be a whole number, not one that goes on with '" + std::string(next) + "'");
  if (in.fail()) return;
  name = readName;
  note = readNote;
  readParameters(in);
}

void Factor::writeParameters(TextWriter& out) const {
  const std::vector<Parameter> values = parameters();
  if (values.empty()) out << '\t';
  for (const Parameter& parameter : values) out << '\t' << parameter.value;
  out << '\n';
}

void Factor::readParameters(TextReader&) {}

}  // namespace tarvex
