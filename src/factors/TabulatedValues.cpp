#include "factors/TabulatedValues.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "base/NumberText.h"
#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "factors/IntervalDistribution.h"
#include "factors/lineEnd.h"

namespace tarvex {
namespace {

constexpr std::uint64_t kShortestRow = 4;  // bytes: two digits, a tab, a line end

bool readRow(TextReader& in, bool isPoint, Interval& row) {
  double left = 0.0;
  double right = 0.0;
  in.expect(isPoint ? "the value of a point" : "the left end of an interval") >> left;
  // Above 2^53 a value has no neighbour at 1.
  if (isPoint)
    right = std::max(left + 1.0, std::nextafter(left, std::numeric_limits<double>::infinity()));
  else
    in.expect("the right end of an interval") >> right;
  in.expect("a weight") >> row.weight;
  if (in.fail()) return false;
  if (!row.setBounds(left, right)) return in.refuse(row.errorText);
  if (row.weight > 0.0 && row.weight <= 1.0) return true;
  return in.refuse("a weight must be above 0 and at most 1, not " + numberText(row.weight));
}

bool readRows(TextReader& in, IntervalDistribution& distribution) {
  std::int32_t rows = 0;
  in.expect("the number of rows") >> rows;
  if (in.ok() && rows < 1) in.refuse("the number of rows must be at least 1, not " + std::to_string(rows));
  if (!readLineEnd(in) || !in.checkCount(rows, kShortestRow)) return false;
  distribution.clear();
  for (std::int32_t i = 0; i < rows; ++i) {
    std::unique_ptr<Interval> row = distribution.newInterval();
    if (!readRow(in, distribution.holdsPoints(), *row)) return false;
    if (!distribution.append(std::move(row))) return in.refuse(distribution.errorText);
  }
  distribution.rescaleWeights();
  return readTextEnd(in);
}

}  // namespace

bool loadTabulatedValues(const std::string& path, IntervalDistribution& distribution, std::string& message) {
  TextReader in = TextReader::fromFile(path);
  if (in.fail()) {
    message = withProblem("Error opening tabulated values file", in);
    return false;
  }
  const std::unique_ptr<Factor> loaded = distribution.clone();
  if (!readRows(in, static_cast<IntervalDistribution&>(*loaded))) {
    message = withProblem("Error reading tabulated values file", in);
    return false;
  }
  distribution.swapIntervals(static_cast<IntervalDistribution&>(*loaded));
  return true;
}

bool saveTabulatedValues(const std::string& path, const IntervalDistribution& distribution, std::string& message) {
  TextWriter out(path);
  if (!out.ok()) {
    message = withProblem("Error opening saving file", out);
    return false;
  }
  out << distribution.count() << '\n';
  for (std::size_t i = 0; i < distribution.count(); ++i) {
    const Interval& row = *distribution.intervalAt(i);
    out << row.left << '\t';
    if (!distribution.holdsPoints()) out << row.right << '\t';
    out << row.weight << '\n';
  }
  if (!out.commit()) {
    message = withProblem("Error writing tabulated values file", out);
    return false;
  }
  return true;
}

}  // namespace tarvex
