#include "factors/factorFields.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <limits>

#include "base/NumberText.h"
#include "base/TextReader.h"
#include "factors/IntervalDistribution.h"
#include "factors/Relation.h"
#include "factors/makeFactor.h"

namespace tarvex {
namespace {

constexpr int kEveryDigit = 17;   // tells any two doubles apart
constexpr int kUsualDigits = 15;  // as a user wrote them

std::string lowered(std::string_view word) {
  std::string plain;
  for (const char c : word)
    if (c != ' ' && c != '-' && c != '_') plain += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  constexpr std::string_view kTail = "distribution";
  if (plain.size() > kTail.size() && plain.ends_with(kTail)) plain.resize(plain.size() - kTail.size());
  return plain;
}

// The numbers between blanks, tabs and commas with a blank behind them.
bool readNumbers(const std::string& text, std::vector<double>& numbers, std::string& message) {
  std::size_t at = 0;
  while (true) {
    at = text.find_first_not_of(" \t", at);
    if (at == std::string::npos) return true;
    const std::size_t end = std::min(text.find_first_of(" \t", at), text.size());
    std::string word = text.substr(at, end - at);
    at = end;
    if (word.size() > 1 && word.back() == ',' && end < text.size()) word.pop_back();
    double value = 0.0;
    if (!isNumber(word, value) || !std::isfinite(value)) {
      message =
          "'" + word + "' is no number" +
          (word.find(',') != std::string::npos ? ": decimals stand behind a point, and a blank behind a comma" : "");
      return false;
    }
    numbers.push_back(value);
  }
}

std::vector<std::string> parts(const std::string& text) {
  std::vector<std::string> result;
  std::size_t from = 0;
  for (std::size_t at = 0; at != std::string::npos; from = at + 1) {
    at = text.find(';', from);
    std::string part = text.substr(from, at - from);
    if (part.find_first_not_of(" \t") != std::string::npos) result.push_back(std::move(part));
  }
  return result;
}

bool readIntervals(IntervalDistribution& list, const std::string& text, std::string& message) {
  const std::vector<std::string> rows = parts(text);
  const std::size_t bounds = list.holdsPoints() ? 1 : 2;
  std::size_t weights = 0;
  list.clear();
  for (std::size_t i = 0; i < rows.size(); ++i) {
    std::vector<double> row;
    bool taken = readNumbers(rows[i], row, message);
    if (taken && row.size() != bounds && row.size() != bounds + 1) {
      message = list.holdsPoints() ? "a value and its weight are expected" : "two ends and a weight are expected";
      taken = false;
    }
    if (taken && row.size() > bounds) ++weights;
    if (taken && weights != 0 && weights != i + 1) {
      message = "a weight for each or for none";
      taken = false;
    }
    if (!taken || !appendFields(list, row, 1.0 / static_cast<double>(rows.size()), message)) {
      message = "Row " + std::to_string(i + 1) + ": " + message;
      return false;
    }
  }
  if (rows.empty())
    message = "no values";
  else if (!list.checkWeights())
    message = list.errorText;
  else
    return true;
  return false;
}

}  // namespace

const std::vector<std::string>& factorKinds() {
  static const std::vector<std::string> kinds{"Normal",  "LogNormal",  "Uniform",     "LogUniform",
                                              "Weibull", "Constant",   "Exponential", "Gamma",
                                              "Beta",    "Triangular", "Relation",    "Discrete"};
  return kinds;
}

std::string kindOfWord(std::string_view word) {
  const std::string plain = lowered(word);
  const auto found =
      std::ranges::find_if(factorKinds(), [&](const std::string& kind) { return lowered(kind) == plain; });
  return found == factorKinds().end() ? std::string() : *found;
}

bool appendFields(IntervalDistribution& list, const std::vector<double>& row, double share, std::string& message) {
  const std::size_t bounds = list.holdsPoints() ? 1 : 2;
  std::unique_ptr<Interval> interval = list.newInterval();
  const double right = list.holdsPoints()
                           ? std::max(row[0] + 1.0, std::nextafter(row[0], std::numeric_limits<double>::infinity()))
                           : row[1];
  interval->weight = row.size() > bounds ? row[bounds] : share;
  if (!interval->setBounds(row[0], right))
    message = interval->errorText;
  else if (!(interval->weight > 0.0 && interval->weight <= 1.0))
    message = "Weight value error";
  else if (!list.append(std::move(interval)))
    message = list.errorText;
  else
    return true;
  return false;
}

std::unique_ptr<Factor> makeFactorOf(const std::string& typeName, const std::vector<double>& parameters) {
  std::unique_ptr<Factor> factor = makeFactor(typeName);
  if (!factor) return nullptr;
  const std::vector<Parameter> defaults = factor->parameters();
  if (parameters.size() > defaults.size() || defaults.empty()) return nullptr;
  // The kind's own reader takes all of them at once, and keeps what its setters would refuse.
  std::string record = factor->name + "\n\n1";
  for (std::size_t i = 0; i < defaults.size(); ++i)
    record += '\t' + numberText(i < parameters.size() ? parameters[i] : defaults[i].value, kEveryDigit);
  TextReader in = TextReader::fromText(record + '\n');
  factor->read(in);
  return in.ok() ? std::move(factor) : nullptr;
}

std::string factorFields(const Factor& factor) {
  const auto number = [](double value) { return numberText(value, kUsualDigits); };
  if (const auto* relation = dynamic_cast<const Relation*>(&factor))
    return relation->refusedExpression().empty() ? relation->expression() : relation->refusedExpression();
  std::string text;
  if (const auto* list = dynamic_cast<const IntervalDistribution*>(&factor)) {
    for (std::size_t i = 0; i < list->count(); ++i) {
      const Interval& interval = *list->intervalAt(i);
      if (i > 0) text += "; ";
      text += number(interval.left);
      if (!list->holdsPoints()) text += ", " + number(interval.right);
      if (list->count() > 1) text += ", " + number(interval.weight);
    }
    return text;
  }
  for (const Parameter& parameter : factor.parameters()) text += (text.empty() ? "" : ", ") + number(parameter.value);
  return text;
}

std::unique_ptr<Factor> readFactorFields(const std::string& typeName, const std::string& text, const Factor* from,
                                         std::string& message) {
  std::unique_ptr<Factor> factor = makeFactor(typeName);
  if (!factor) {
    message = "'" + typeName + "' is no distribution";
    return nullptr;
  }
  if (auto* const relation = dynamic_cast<Relation*>(factor.get())) {
    if (relation->setExpression(text)) return factor;
    message = relation->errorText;
    return nullptr;
  }
  if (auto* const list = dynamic_cast<IntervalDistribution*>(factor.get()))
    return readIntervals(*list, text, message) ? std::move(factor) : nullptr;
  std::vector<double> numbers;
  if (!readNumbers(text, numbers, message)) return nullptr;
  const bool sameKind = from != nullptr && from->typeName == typeName;
  const std::vector<Parameter> kept = sameKind ? from->parameters() : factor->parameters();
  if (numbers.size() > kept.size()) {
    message = std::to_string(numbers.size()) + " numbers where " + std::to_string(kept.size()) + " are expected:";
    for (const Parameter& parameter : kept)
      message += (&parameter == kept.data() ? " " : ", ") + std::string(parameter.name);
    return nullptr;
  }
  for (std::size_t i = numbers.size(); i < kept.size(); ++i) numbers.push_back(kept[i].value);
  factor = makeFactorOf(typeName, numbers);
  message = factor ? factor->parameterProblem() : "'" + text + "' can't be read";
  return message.empty() ? std::move(factor) : nullptr;
}

}  // namespace tarvex
