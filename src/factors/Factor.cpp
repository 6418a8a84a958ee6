#include "factors/Factor.h"

#include "base/Names.h"
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

bool Factor::accept(bool holds, const char* textOnFailure) {
  if (!holds) errorText = textOnFailure;
  return holds;
}

bool Factor::assign(double& field, double value, bool holds, const char* textOnFailure) {
  if (holds) field = value;
  return accept(holds, textOnFailure);
}

void Factor::write(TextWriter& out) const {
  out << typeName << '\n' << name << '\n' << note << '\n' << status;
  writeParameters(out);
}

void Factor::read(TextReader& in) {
  std::string line;
  in.readLine(line, kMaxName);
  const std::string word(firstWord(line));
  if (in.ok() && !isValidName(word)) in.setFail();
  std::string noteLine;
  in.readLine(noteLine, kMaxNote);
  in >> status;
  // A status that goes on behind its digits is no status.
  const std::string_view next = in.peekLine(1);
  if (!next.empty() && next[0] != '\t' && next[0] != ' ') in.setFail();
  if (in.ok()) {
    name = word;
    note = noteLine;
    readParameters(in);
  }
}

void Factor::writeParameters(TextWriter& out) const {
  const std::vector<Parameter> values = parameters();
  if (values.empty()) out << '\t';
  for (const Parameter& parameter : values) out << '\t' << parameter.value;
  out << '\n';
}

void Factor::readParameters(TextReader&) {}

}  // namespace tarvex
