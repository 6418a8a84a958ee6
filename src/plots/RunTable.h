#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/Progress.h"

namespace tarvex {

class ModelConfiguration;
class PrepConfiguration;

// A column of a plot: a factor's values in the sample, or a variable's in the results, run by run.
struct RunColumn {
  std::string name;
  bool isFactor = true;
  std::vector<double> values;
  std::int32_t factor = -1;  // its number in the list, by which it has its colour
  std::string unit = {};     // of a factor, when its note names one in brackets: "yearly maxima [m3/s]"

  // "F - x1" or "V - Y": how lists name it that hold both.
  std::string label() const;
  // "flow [m3/s]": the title of an axis.
  std::string axisTitle() const;
};

// The smallest and the largest finite value; the first is the greater one where there is none.
std::pair<double, double> finiteRange(const RunColumn& column);
// What a note says of the unit: the text between its first pair of square brackets.
std::string unitOf(const std::string& note);

struct RunTable {
  std::vector<RunColumn> columns;
  std::int32_t runs = 0;
};

// Reads the columns of the names given; the outputs of `model` are known by `outputNames`: of a factor, or of a
// variable as an analysis knows it (an output, a derived name, an expression); a factor goes first, and "F - " or "V -
// " in front tells the two apart. No names: all factors, then all outputs at their maximum over time where there is a
// time axis. `message` is then empty, or tells of expressions that failed in some runs. False, with a sentence for the
// user, when a name is unknown, a file fails, or results and sample don't belong together, and after a stop; `table` is
// then as it was.
[[nodiscard]] bool readRunTable(const PrepConfiguration& prep, const ModelConfiguration& model,
                                const std::vector<std::string>& outputNames, const std::vector<std::string>& names,
                                RunTable& table, std::string& message, const Progress& progress = {});

// A range that a run's value must lie in.
struct RunRange {
  std::size_t column = 0;
  double lower = 0.0;
  double upper = 0.0;
  bool upperIncluded = true;  // a filter's upper bound belongs to it, that of a region in a plane doesn't
};

// "1 run", "200 runs".
std::string runsText(std::int64_t runs);

// What is said, under the title "Error", to bounds that are no range; empty when upper lies above lower.
std::string_view rangeProblem(double lower, double upper);

// The numbers of the runs that lie in all ranges, upwards. A value that is no number lies in none.
// Requires: columns that there are.
std::vector<std::int32_t> runsWithin(const RunTable& table, const std::vector<RunRange>& ranges);
// The same as marks of the others: 1 for a run that lies outside of any range. Returns how many lie within. Fast enough
// for each movement of a mouse that drags a range.
std::int32_t markDropped(const RunTable& table, const std::vector<RunRange>& ranges,
                         std::vector<std::uint8_t>& dropped);

}  // namespace tarvex
