#include "factors/TabulatedValues.h"

#include <utility>

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
  in >> left;
  if (isPoint) {
    right = left + 1.0;
  } else {
    in >> right;
  }
  in >> row.weight;
  return in.ok() && row.setBounds(left, right) && row.weight > 0.0 && row.weight <= 1.0;
}

bool readRows(TextReader& in, IntervalDistribution& distribution) {
  std::int32_t rows = 0;
  in >> rows;
  if (!readLineEnd(in) || rows < 1 || !in.checkCount(rows, kShortestRow)) return false;
  distribution.clear();
  for (std::int32_t i = 0; i < rows; ++i) {
    std::unique_ptr<Interval> row = distribution.newInterval();
    if (!readRow(in, distribution.holdsPoints(), *row) || !distribution.append(std::move(row))) return false;
  }
  distribution.rescaleWeights();
  return true;
}

}  // namespace

bool loadTabulatedValues(const std::string& path, IntervalDistribution& distribution, std::string& message) {
  TextReader in = TextReader::fromFile(path);
  if (in.fail()) {
    message = "Error opening tabulated values file";
    return false;
  }
  const std::unique_ptr<Factor> loaded = distribution.clone();
  if (!readRows(in, static_cast<IntervalDistribution&>(*loaded))) {
    message = "Error reading tabulated values file";
    return false;
  }
  distribution.swapIntervals(static_cast<IntervalDistribution&>(*loaded));
  return true;
}

bool saveTabulatedValues(const std::string& path, const IntervalDistribution& distribution, std::string& message) {
  TextWriter out(path);
  if (!out.ok()) {
    message = "Error opening saving file";
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
    message = "Error writing tabulated values file";
    return false;
  }
  return true;
}

}  // namespace tarvex
