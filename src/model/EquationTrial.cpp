#include "model/EquationTrial.h"

#include <algorithm>
#include <string_view>

#include "base/uniformRandom.h"
#include "factors/Evaluator.h"
#include "factors/ExpressionCheck.h"
#include "factors/NumberLiteral.h"
#include "factors/ValueBindings.h"
#include "factors/namesInText.h"

namespace tarvex {

namespace {

constexpr std::string_view kNoFunction = "Unknown Function";
constexpr std::string_view kNoQuotient = "Divide by Zero";
constexpr std::size_t kShown = 40;  // characters of a text in a message

bool isNameCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

std::string inQuotes(std::string_view text) {
  return '\'' + std::string(text.substr(0, kShown)) + (text.size() > kShown ? "...'" : "'");
}

// The first name before a parenthesis that the evaluator knows no function of.
std::string_view unknownFunction(std::string_view text) {
  for (std::size_t open = text.find('('); open != std::string_view::npos; open = text.find('(', open + 1)) {
    std::size_t end = open;
    while (end > 0 && text[end - 1] == ' ') --end;
    std::size_t start = end;
    while (start > 0 && isNameCharacter(text[start - 1])) --start;
    const std::string_view name = text.substr(start, end - start);
    Evaluator evaluator;
    if (!name.empty() && !evaluator.evaluate(std::string(name) + "()") && evaluator.evalErrorText() == kNoFunction)
      return name;
  }
  return {};
}

std::string failureOf(const Evaluator& evaluator, std::string_view text) {
  const std::string& reason = evaluator.evalErrorText();
  if (reason == kNoFunction) return "unknown function " + inQuotes(unknownFunction(text));
  return reason + " at character " + std::to_string(evaluator.evalErrorColumn()) + " of " + inQuotes(text);
}

// The evaluator sees an unknown function only behind its arguments.
std::size_t placeOf(const Evaluator& evaluator, const std::string& text) {
  const std::string_view function =
      evaluator.evalErrorText() == kNoFunction ? unknownFunction(text) : std::string_view();
  if (!function.empty()) return static_cast<std::size_t>(function.data() - text.data());
  return placeInText(text, evaluator.evalErrorLine(), evaluator.evalErrorColumn());
}

std::size_t placeOfName(const std::string& name, const std::string& text) {
  const auto names = namesInText(text);
  const auto found = names.find(name);
  return found == names.end() ? 0 : static_cast<std::size_t>(found->first.data() - text.data());
}

// The text with comparisons in place of its quotients: as good or bad as the text itself whatever the values are, as
// "<" may stand wherever "/" may and never fails.
std::string withoutQuotients(std::string text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '/') continue;
    const char next = i + 1 < text.size() ? text[i + 1] : '\0';
    if (next == '/' || next == '*')
      i = std::min(text.find(next == '*' ? "*/" : "\n", i + 2), text.size() - 2) + 1;  // a comment
    else if (next != '=')
      text[i] = '<';
  }
  return text;
}

}  // namespace

EquationTrial tryEquation(const std::string& text, const std::vector<std::string>& bound,
                          const std::vector<std::string>& known) {
  std::vector<double> values(bound.size());
  for (double& value : values) value = enteringValue(trialRandom());
  Evaluator evaluator;
  const ValueBindings bindings(text, bound);
  if (!bindings.apply(evaluator, values.data()))
    return {Trial::kFailed, "names that no equation can hold, or too many"};
  EquationTrial trial;
  if (!evaluator.evaluate(text)) {
    trial.reason = failureOf(evaluator, text);
    trial.place = placeOf(evaluator, text);
    if (evaluator.evalErrorText() != kNoQuotient) return {Trial::kFailed, trial.reason, trial.place};
    evaluator.clearSymbols();
    const std::string other = withoutQuotients(text);
    if (!bindings.apply(evaluator, values.data()) || !evaluator.evaluate(other))
      return {Trial::kFailed, failureOf(evaluator, text), placeOf(evaluator, text)};
  }
  const auto isMissing = [](const std::vector<std::string>& names, const std::string& name) {
    return std::ranges::find(names, name) == names.end();
  };
  for (const Evaluator::Symbol& symbol : evaluator.symbolTable())
    if (isMissing(bound, symbol.name) && isMissing(known, symbol.name))
      return {Trial::kUnknownName, "unknown name " + inQuotes(symbol.name), placeOfName(symbol.name, text)};
  return trial;
}

}  // namespace tarvex
