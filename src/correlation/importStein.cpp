#include "correlation/importStein.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

#include "base/Memory.h"
#include "base/Names.h"
#include "base/TextReader.h"
#include "base/sortPositions.h"
#include "factors/FactorList.h"
#include "factors/Uniform.h"
#include "factors/lineEnd.h"

namespace tarvex {

namespace {

constexpr std::size_t kMaxNameLine = 255;
constexpr std::uint64_t kShortestName = 2;    // bytes: a letter and the line's end
constexpr std::uint64_t kShortestNumber = 2;  // bytes: a digit and what separates it from the next

constexpr const char* kNothingToImport = "Error loading stein file. No factors to import.";
constexpr const char* kOtherCount =
    "Error loading stein file. The number of imported factors is different from the loaded configuration.";
constexpr const char* kInconsistent = "Error loading stein file. Current data may be inconsistent or corrupt.";

// Blanks around a name don't belong to it. Names that become factors obey the rule of those.
bool readNames(TextReader& in, std::int32_t count, bool becomeFactors, std::vector<std::string>& names) {
  in.checkCount(count, kShortestName);
  std::string line;
  for (std::int32_t i = 0; i < count && in.expect("the name of a column").readLine(line, kMaxNameLine); ++i) {
    const std::string_view word = firstWord(line);
    const std::size_t end = line.find_last_not_of(" \t\v\f\r") + 1;
    const std::size_t start = word.empty() ? end : static_cast<std::size_t>(word.data() - line.data());
    const std::string name = line.substr(start, end - start);
    const std::string problem = becomeFactors ? Factor::kNameRule.problem(name) : "";
    if (!problem.empty()) return in.refuse(problem);
    if (name.empty() || isForbiddenAtNameStart(name.front()))
      return in.refuse("the name of a column must begin with a letter, not as '" + name + "' does");
    names.push_back(name);
  }
  return in.ok();
}

bool readRows(TextReader& in, std::int32_t rows, std::int32_t columns, sampValues& store) {
  store.clear();
  if (columns == 0) return true;
  // The last number may stand at the end of the text.
  in.checkCount(static_cast<std::int64_t>(rows) * columns - 1, kShortestNumber);
  if (in.fail()) return false;
  if (!store.allocate(columns)) return in.refuse(store.errorText());
  std::vector<double> row(static_cast<std::size_t>(columns));
  for (std::int32_t r = 0; r < rows; ++r) {
    for (double& value : row) in.expect("a value of the sample") >> value;
    if (in.fail()) return false;
    if (store.addRow(row.data()) == 0) return in.refuse(store.errorText());
  }
  return true;
}

// The two counts and the rest of their line.
bool readCounts(TextReader& in, std::int32_t& rows, std::int32_t& columns) {
  in.expect("the number of rows") >> rows;
  if (in.ok() && rows < 1) return in.refuse("the number of rows must be at least 1, not " + std::to_string(rows));
  in.expect("the number of columns") >> columns;
  if (in.ok() && columns < 0) return in.refuse("the number of columns is " + std::to_string(columns));
  return in.ok();
}

// Gives the factor the empirical distribution of a column: between two neighbouring values the share of the steps that
// lead there. False, with the reason in the factor's errorText, when all values are equal or one is not a number, and
// after a stop.
bool setEmpirical(const std::vector<double>& column, Uniform& factor, const Progress& progress) {
  factor.errorText = "a value is not a finite number";
  if (!std::all_of(column.begin(), column.end(), [](double value) { return std::isfinite(value); })) return false;
  std::vector<std::int32_t> positions;
  factor.errorText = kNotEnoughMemory;
  if (!sortPositions(column, positions, progress)) return false;
  std::vector<double> values;
  values.reserve(positions.size());
  for (const std::int32_t position : positions) values.push_back(column[static_cast<std::size_t>(position)]);
  const double steps = static_cast<double>(values.size()) - 1.0;
  factor.clear();
  std::int32_t equal = 1;  // values that the next interval stands for
  for (std::size_t i = 1; i < values.size(); ++i) {
    if (values[i] == values[i - 1]) {
      ++equal;
      continue;
    }
    auto interval = std::make_unique<Interval>(values[i - 1], values[i], equal / steps);
    if (!factor.addInterval(std::move(interval))) return false;
    equal = 1;
  }
  factor.errorText = "all values are equal";
  if (factor.count() == 0) return false;
  Interval& last = *factor.intervalAt(factor.count() - 1);
  const double weight = last.weight + (equal - 1) / steps;
  if (weight > 0.0 && weight <= 1.0)
    last.weight = weight;
  else
    last.errorText = "Weight value error";
  factor.errorText = "No errors";
  return true;
}

}  // namespace

bool importStein(const std::string& path, SteinImport mode, FactorList& list, std::string& message,
                 const Progress& progress) {
  constexpr double kReadShare = 0.7;  // of the time, roughly
  TextReader in = TextReader::fromFile(path, progress.part(0.0, kReadShare));
  const auto fail = [&in, &message](const char* text) {
    message = withProblem(text, in);
    return false;
  };
  std::int32_t rows = 0;
  std::int32_t columns = 0;
  if (!readCounts(in, rows, columns)) return fail(kNothingToImport);
  if (mode != kSteinAttachAny && list.factorCount() > 0 && columns != list.factorCount()) {
    in.refuse(std::to_string(columns) + " columns stand against " + std::to_string(list.factorCount()) + " factors");
    return fail(kOtherCount);
  }
  in.skipLine();
  if (mode == kSteinReplace) list.clear();
  std::vector<std::string> names;
  if (!readNames(in, columns, mode == kSteinReplace, names)) return fail(kInconsistent);
  for (std::size_t i = 0; mode == kSteinReplace && i < names.size(); ++i) {
    auto factor = std::make_unique<Uniform>();
    factor->name = names[i];
    list.addFactor(std::move(factor));
  }
  const std::string pathProblem = kSteinFileRule.problem(path);
  if (!pathProblem.empty()) in.refuse(pathProblem);
  if (in.fail()) return fail(kInconsistent);
  list.steinFileName = path;
  if (!readRows(in, rows, columns, list.steinInfo) || !readTextEnd(in)) return fail(kInconsistent);
  if (mode != kSteinReplace) {
    list.correlationMode = kSteinSample;
    return true;
  }
  std::vector<double> values;
  const double share = (1.0 - kReadShare) / columns;
  for (std::int32_t i = 0; i < columns; ++i) {
    const Progress ofColumn = progress.part(kReadShare + i * share, kReadShare + (i + 1) * share);
    auto& factor = static_cast<Uniform&>(list.factor(i));
    if (!list.steinInfo.getColumn(i, values)) {
      in.refuse(list.steinInfo.errorText());
      return fail(kInconsistent);
    }
    if (setEmpirical(values, factor, ofColumn)) continue;
    in.refuse("the column " + factor.name + ": " + factor.errorText);
    return fail(kInconsistent);
  }
  return true;
}

}  // namespace tarvex
