#include "correlation/importStein.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

#include "base/Names.h"
#include "base/TextReader.h"
#include "factors/FactorList.h"
#include "factors/Uniform.h"

namespace tarvex {

namespace {

constexpr std::size_t kMaxNameLine = 255;
constexpr std::uint64_t kShortestName = 2;    // bytes: a letter and the line's end
constexpr std::uint64_t kShortestNumber = 2;  // bytes: a digit and what separates it from the next

constexpr const char* kNothingToImport = "Error loading stein file. No factors to import.";
constexpr const char* kOtherCount =
    "Error loading stein file. The number of imported factors is different from the loaded configuration.";
constexpr const char* kInconsistent = "Error loading stein file. Current data may be inconsistent or corrupt.";

bool readNames(TextReader& in, std::int32_t count, std::vector<std::string>& names) {
  in.checkCount(count, kShortestName);
  std::string name;
  for (std::int32_t i = 0; i < count && in.readLine(name, kMaxNameLine); ++i) {
    if (name.empty() || isForbiddenAtNameStart(name.front())) in.setFail();
    names.push_back(name);
  }
  return in.ok();
}

bool readRows(TextReader& in, std::int32_t rows, std::int32_t columns, sampValues& store) {
  store.clear();
  if (columns == 0) return true;
  // The last number may stand at the end of the text.
  in.checkCount(static_cast<std::int64_t>(rows) * columns - 1, kShortestNumber);
  if (in.fail() || !store.allocate(columns)) return false;
  std::vector<double> row(static_cast<std::size_t>(columns));
  for (std::int32_t r = 0; r < rows; ++r) {
    for (double& value : row) in >> value;
    if (in.fail() || store.addRow(row.data()) == 0) return false;
  }
  return true;
}

// Gives the factor the empirical distribution of a column: between two neighbouring values the share of the steps that
// lead there. False when all values are equal, or when one is not a number.
bool setEmpirical(std::vector<double> values, Uniform& factor) {
  if (!std::all_of(values.begin(), values.end(), [](double value) { return std::isfinite(value); })) return false;
  std::sort(values.begin(), values.end());
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
  if (factor.count() == 0) return false;
  Interval& last = *factor.intervalAt(factor.count() - 1);
  const double weight = last.weight + (equal - 1) / steps;
  if (weight > 0.0 && weight <= 1.0)
    last.weight = weight;
  else
    last.errorText = "Weight value error";
  return true;
}

}  // namespace

bool importStein(const std::string& path, SteinImport mode, FactorList& list, std::string& message) {
  TextReader in = TextReader::fromFile(path);
  std::int32_t rows = 0;
  std::int32_t columns = -1;
  in >> rows >> columns;
  if (in.fail() || rows < 1 || columns < 0) {
    message = kNothingToImport;
    return false;
  }
  if (mode != kSteinAttachAny && list.factorCount() > 0 && columns != list.factorCount()) {
    message = kOtherCount;
    return false;
  }
  in.skipLine();
  if (mode == kSteinReplace) list.clear();
  message = kInconsistent;
  std::vector<std::string> names;
  if (!readNames(in, columns, names)) return false;
  for (std::size_t i = 0; mode == kSteinReplace && i < names.size(); ++i) {
    auto factor = std::make_unique<Uniform>();
    factor->name = names[i];
    list.addFactor(std::move(factor));
  }
  list.steinFileName = path;
  if (!readRows(in, rows, columns, list.steinInfo)) return false;
  if (mode != kSteinReplace) {
    list.correlationMode = kSteinSample;
    return true;
  }
  std::vector<double> values;
  for (std::int32_t i = 0; i < columns; ++i) {
    if (!list.steinInfo.getColumn(i, values)) {
      message += '\n' + list.steinInfo.errorText();
      return false;
    }
    if (!setEmpirical(values, static_cast<Uniform&>(list.factor(i)))) return false;
  }
  return true;
}

}  // namespace tarvex
