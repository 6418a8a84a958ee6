#include "postproc/OutputExpression.h"

#include <algorithm>
#include <cctype>
#include <set>
#include <utility>

#include "factors/NumberLiteral.h"
#include "postproc/UaStats.h"

namespace tarvex {

namespace {

constexpr std::size_t kMaxExpressionChars = UaStats::kMaxNameChars;  // the text names the variable in the record
constexpr const char* kNotEvaluated = "   Expression can't be evaluated.";
// Digits at which an output's value enters an expression.
constexpr int kValueDigits = 15;
// Values for trying an expression out: all different and none of them round, so that no divisor vanishes by chance.
constexpr double kTrialValue = 0.7310585786;
constexpr double kTrialStep = 0.0137218467;

bool isNameStart(char c) {
  return std::isalpha(static_cast<unsigned char>(c)) != 0 || c == '_';
}
bool isNameChar(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}
bool isBlank(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

// Where the comment that begins at `position` ends; `position` itself when none begins there.
std::size_t behindComment(std::string_view text, std::size_t position) {
  const bool block = text.substr(position, 2) == "/*";
  if (!block && text.substr(position, 2) != "//") return position;
  const std::size_t end = block ? text.find("*/", position + 2) : text.find('\n', position);
  return end == std::string_view::npos ? text.size() : end + (block ? 2 : 0);
}

std::size_t behindWord(std::string_view text, std::size_t position) {
  while (position < text.size() && isNameChar(text[position])) ++position;
  return position;
}

std::string_view withoutBlanks(std::string_view text) {
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  return text;
}

// Whether the word in front of `rest` is that of a function, whatever outputs there are.
bool isCall(std::string_view rest) {
  return withoutBlanks(rest).starts_with('(');
}

// The names of a text that are no outputs: what it assigns and what it only reads.
struct OwnNames {
  std::set<std::string, std::less<>> assigned;
  std::set<std::string, std::less<>> used;

  // Takes the name before `rest`, the rest of the text.
  void take(std::string_view name, std::string_view rest) {
    if (isCall(rest)) return;
    rest = withoutBlanks(rest);
    const bool compound = rest.size() > 1 && std::string_view("+-*/").find(rest[0]) != std::string_view::npos;
    if (compound && rest[1] == '=') rest.remove_prefix(1);
    const bool isAssignment = rest.starts_with('=') && !rest.starts_with("==");
    (isAssignment ? assigned : used).emplace(name);
  }
  // A name that is only read is a misspelt output; the calculator would take it for 0.
  bool allAssigned() const { return std::includes(assigned.begin(), assigned.end(), used.begin(), used.end()); }
};

// "var0", "var1" and so on, passing over what the text itself uses.
class VariableNames {
 public:
  explicit VariableNames(std::string_view text) : text_(text) {}

  const std::string& name(std::size_t index) {
    while (names_.size() <= index) {
      std::string candidate = "var" + std::to_string(counter_++);
      if (text_.find(candidate) == std::string_view::npos) names_.push_back(std::move(candidate));
    }
    return names_[index];
  }
  const std::vector<std::string>& all() const { return names_; }

 private:
  std::string_view text_;
  std::vector<std::string> names_;
  std::size_t counter_ = 0;
};

}  // namespace

bool OutputExpression::set(const std::string& text, const std::vector<std::string>& outputNames, std::string& reason) {
  references_.clear();
  single_ = true;
  if (text.size() > kMaxExpressionChars || text.find_first_of("\r\n") != std::string::npos) {
    reason = "A variable is one line of at most " + std::to_string(kMaxExpressionChars) + " characters.";
    return false;
  }
  OutputReference reference;
  std::size_t position = 0;
  const auto parsed = OutputReference::parse(text, outputNames, position, reference);
  if (parsed == OutputReference::Parsed::kReference && position == text.size()) {
    references_.push_back(reference);
    return true;
  }
  // A text that has the form of a name is meant as one, and so is told apart from a faulty expression.
  const std::string_view word = std::string_view(text).substr(0, text.find('['));
  const bool isName = !word.empty() && isNameStart(word.front()) && std::all_of(word.begin(), word.end(), isNameChar) &&
                      (word.size() == text.size() || text.find(']') == text.size() - 1);
  if (isName) {
    reason = parsed == OutputReference::Parsed::kNone
                 ? "The model has no output \"" + std::string(word) + "\"."
                 : "\"" + text + "\" names neither the maximum nor a time of the output " + std::string(word) + ".";
    return false;
  }
  single_ = false;
  if (compile(text, outputNames) && tryOut()) return true;
  reason = kNotEvaluated;
  return false;
}

// Replaces every reference by a variable and makes the equation.
bool OutputExpression::compile(std::string_view text, const std::vector<std::string>& outputNames) {
  std::string program;
  OwnNames ownNames;
  VariableNames variables(text);
  for (std::size_t position = 0; position < text.size();) {
    const std::size_t start = position;
    position = behindComment(text, start);
    if (position != start) {
      program += ' ';
      continue;
    }
    const std::size_t wordEnd = behindWord(text, start);
    OutputReference reference;
    const auto parsed = isCall(text.substr(wordEnd)) && wordEnd > start
                            ? OutputReference::Parsed::kNone
                            : OutputReference::parse(text, outputNames, position, reference);
    if (parsed == OutputReference::Parsed::kBadBracket) return false;
    if (parsed == OutputReference::Parsed::kReference) {
      program += variables.name(indexOf(reference));
      continue;
    }
    position = std::max(wordEnd, start + 1);
    const std::string_view word = text.substr(start, position - start);
    if (isNameStart(word.front())) ownNames.take(word, text.substr(position));
    program += word;
  }
  bound_.resize(references_.size());
  equation_ = Equation(program, variables.all());
  return ownNames.allAssigned();
}

std::size_t OutputExpression::indexOf(const OutputReference& reference) {
  const auto found = std::find_if(references_.begin(), references_.end(),
                                  [&reference](const OutputReference& known) { return known.isSameAs(reference); });
  if (found != references_.end()) return static_cast<std::size_t>(found - references_.begin());
  references_.push_back(reference);
  return references_.size() - 1;
}

bool OutputExpression::tryOut() {
  for (std::size_t i = 0; i < bound_.size(); ++i)
    bound_[i] = enteringValue(kTrialValue + kTrialStep * static_cast<double>(i), kValueDigits);
  double value = 0.0;
  return equation_.evaluate(bound_.data(), value);
}

bool OutputExpression::evaluate(const ModelConfiguration& model, std::int32_t run, const std::vector<double>& values,
                                double& result) {
  if (single_) {
    result = references_.front().value(model, run, values);
    return true;
  }
  for (std::size_t i = 0; i < references_.size(); ++i)
    bound_[i] = enteringValue(references_[i].value(model, run, values), kValueDigits);
  result = 0.0;
  return equation_.evaluate(bound_.data(), result);
}

}  // namespace tarvex
