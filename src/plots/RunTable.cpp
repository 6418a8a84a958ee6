#include "plots/RunTable.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "model/ModelConfiguration.h"
#include "postproc/OutputVariables.h"
#include "sampling/PrepConfiguration.h"

namespace tarvex {

namespace {

constexpr std::string_view kFactorPrefix = "F - ";
constexpr std::string_view kVariablePrefix = "V - ";
constexpr double kOutputsShare = 0.7;  // of the time, roughly: a run is read whole

// What a name stands for: a factor of the list, or a variable under a text of its own.
struct Choice {
  std::int32_t factor = -1;
  std::string variable;
};

std::int32_t factorNamed(const FactorList& factors, std::string_view name) {
  for (std::int32_t i = 0; i < factors.factorCount(); ++i)
    if (factors.factor(i).name == name) return i;
  return -1;
}

// A prefix counts where its kind has that name; else the whole may be an expression, such as the difference of an
// output "F" and another one.
bool resolve(const PrepConfiguration& prep, const std::vector<std::string>& outputNames, const std::string& name,
             Choice& choice, std::string& message) {
  const std::string rest = name.size() > kFactorPrefix.size() ? name.substr(kFactorPrefix.size()) : "";
  choice = {factorNamed(prep.factors, name.starts_with(kFactorPrefix) ? rest : name), ""};
  if (choice.factor >= 0) return true;
  if (name.starts_with(kVariablePrefix) && OutputVariables::check(rest, outputNames).empty()) {
    choice.variable = rest;
    return true;
  }
  const std::string reason = OutputVariables::check(name, outputNames);
  choice.variable = name;
  if (reason.empty()) return true;
  message = "There is no factor \"" + name + "\", nor is it a variable:\n" + reason;
  return false;
}

std::vector<Choice> everything(const PrepConfiguration& prep, const std::vector<std::string>& outputNames,
                               bool hasTimeAxis) {
  std::vector<Choice> choices;
  for (std::int32_t i = 0; i < prep.factors.factorCount(); ++i) choices.push_back({i, ""});
  for (std::string& text : OutputVariables::defaultVariables(outputNames, hasTimeAxis))
    choices.push_back({-1, std::move(text)});
  return choices;
}

// Runs that sample and results have in common; false when they differ.
bool countRuns(const PrepConfiguration& prep, const ModelConfiguration& model, bool factors, bool variables,
               std::int32_t& runs, std::string& message) {
  const std::int32_t sampled = prep.samples.rows();
  runs = variables ? model.results.runCount() : sampled;
  // Results alone are good without their sample.
  if (!variables || runs == sampled || (sampled == 0 && !factors)) return true;
  message = "The sample has " + runsText(sampled) + ", the results have " + std::to_string(runs) + ".";
  return false;
}

bool readColumn(const sampValues& values, std::int32_t column, RunColumn& into, std::string& message) {
  if (values.rows() == 0 || values.getColumn(column, into.values)) return true;
  message = values.errorText();
  return false;
}

}  // namespace

std::string unitOf(const std::string& note) {
  const std::size_t open = note.find('[');
  const std::size_t close = note.find(']', open == std::string::npos ? note.size() : open);
  return close == std::string::npos ? std::string() : note.substr(open + 1, close - open - 1);
}

std::pair<double, double> finiteRange(const RunColumn& column) {
  std::pair range{std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};
  for (const double value : column.values) {
    if (!std::isfinite(value)) continue;
    range.first = std::min(range.first, value);
    range.second = std::max(range.second, value);
  }
  return range;
}

std::string RunColumn::axisTitle() const {
  return unit.empty() ? name : name + " [" + unit + ']';
}

std::string RunColumn::label() const {
  return std::string(isFactor ? kFactorPrefix : kVariablePrefix) + name;
}

bool readRunTable(const PrepConfiguration& prep, const ModelConfiguration& model,
                  const std::vector<std::string>& outputNames, const std::vector<std::string>& names, RunTable& table,
                  std::string& message, const Progress& progress) {
  std::vector<Choice> choices =
      names.empty() ? everything(prep, outputNames, model.results.hasTimeAxis()) : std::vector<Choice>(names.size());
  for (std::size_t i = 0; i < names.size(); ++i)
    if (!resolve(prep, outputNames, names[i], choices[i], message)) return false;

  std::vector<std::string> texts;
  for (const Choice& choice : choices)
    if (choice.factor < 0) texts.push_back(choice.variable);
  RunTable read;
  if (!countRuns(prep, model, texts.size() < choices.size(), !texts.empty(), read.runs, message)) return false;

  OutputVariables variables;
  OutputTable outputs;
  if (!texts.empty() &&
      (!variables.set(texts, outputNames) || !variables.build(model, outputs, progress.part(0.0, kOutputsShare)))) {
    message = variables.errorText();
    return false;
  }
  std::int32_t nextVariable = 0;
  const Progress reading = progress.part(texts.empty() ? 0.0 : kOutputsShare, 1.0);
  for (const Choice& choice : choices) {
    if (!reading.report(read.columns.size(), choices.size())) {
      message = kStoppedText;
      return false;
    }
    RunColumn& column = read.columns.emplace_back();
    column.isFactor = choice.factor >= 0;
    column.name = column.isFactor ? prep.factors.factor(choice.factor).name : choice.variable;
    column.factor = choice.factor;
    if (column.isFactor) column.unit = unitOf(prep.factors.factor(choice.factor).note);
    const bool done = column.isFactor ? readColumn(prep.samples, choice.factor, column, message)
                                      : readColumn(outputs, nextVariable++, column, message);
    if (!done) return false;
  }
  message = variables.failures();
  table = std::move(read);
  return true;
}

std::string runsText(std::int64_t runs) {
  return std::to_string(runs) + (runs == 1 ? " run" : " runs");
}

std::string_view rangeProblem(double lower, double upper) {
  return upper > lower ? "" : "  Upper bound must be greater than lower bound.";
}

std::vector<std::int32_t> runsWithin(const RunTable& table, const std::vector<RunRange>& ranges) {
  std::vector<std::uint8_t> dropped;
  std::vector<std::int32_t> runs;
  runs.reserve(static_cast<std::size_t>(markDropped(table, ranges, dropped)));
  for (std::int32_t run = 0; run < table.runs; ++run)
    if (dropped[static_cast<std::size_t>(run)] == 0) runs.push_back(run);
  return runs;
}

std::int32_t markDropped(const RunTable& table, const std::vector<RunRange>& ranges,
                         std::vector<std::uint8_t>& dropped) {
  dropped.assign(static_cast<std::size_t>(table.runs), 0);
  for (const RunRange& range : ranges) {
    const std::vector<double>& values = table.columns[range.column].values;
    for (std::size_t run = 0; run < dropped.size(); ++run) {
      const double value = values[run];
      const bool below = range.upperIncluded ? value <= range.upper : value < range.upper;
      dropped[run] |= static_cast<std::uint8_t>(!(value >= range.lower && below));
    }
  }
  return table.runs - static_cast<std::int32_t>(std::count(dropped.begin(), dropped.end(), 1));
}

}  // namespace tarvex
