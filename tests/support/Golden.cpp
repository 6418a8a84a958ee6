#include "support/Golden.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "base/NumberText.h"
#include "support/TextFiles.h"

namespace tarvex::test {
namespace {

using Lines = std::vector<std::string>;

constexpr std::string_view kSeparators = " \t:=,;";
constexpr int kTablePrecision = 10;
constexpr int kPrecision = 6;
constexpr double kRounding = 1.0 + 1e-9;  // the tolerances are compared with differences of rounded numbers
constexpr std::size_t kMaxShown = 5;

// A sample table in the text: its number lines, and the largest number of each of its columns.
struct Table {
  std::size_t first = 0;
  std::size_t end = 0;
  bool byFactor = false;
  std::vector<double> columnSizes;
};

struct Layout {
  std::vector<bool> skipped;
  std::vector<Table> tables;
};

std::size_t countAt(const Lines& lines, std::size_t index) {
  double value = 0;
  if (index >= lines.size() || !isNumber(lines[index], value) || !(value >= 0 && value < 1e9)) return 0;
  return static_cast<std::size_t>(value);
}

// Words are what stands between separators; separators are kept for a comparison byte for byte.
std::string_view wordAt(std::string_view line, std::size_t position) {
  const std::size_t end = std::min(line.find_first_of(kSeparators, position), line.size());
  return line.substr(position, end - position);
}

void growColumnSizes(Table& table, std::size_t lineInTable, std::string_view line) {
  std::size_t word = 0;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const std::string_view text = wordAt(line, i);
    double value = 0;
    const std::size_t column = table.byFactor ? lineInTable : word;
    if (isNumber(text, value) && std::isfinite(value)) {
      if (table.columnSizes.size() <= column) table.columnSizes.resize(column + 1);
      table.columnSizes[column] = std::max(table.columnSizes[column], std::fabs(value));
    }
    i += text.size();
    ++word;
  }
}

// The text form of a sample store that begins at line `start`: rows, columns, order, numbers.
std::size_t addTable(Layout& layout, const Lines& lines, std::size_t start) {
  Table table;
  table.byFactor = countAt(lines, start + 2) == 1;
  table.first = start + 3;
  table.end = std::min(lines.size(), table.first + countAt(lines, table.byFactor ? start + 1 : start));
  for (std::size_t i = table.first; i < table.end; ++i) growColumnSizes(table, i - table.first, lines[i]);
  layout.tables.push_back(table);
  return std::max(table.end, start);
}

class LayoutMaker {
 public:
  LayoutMaker(std::string_view name, const Lines& lines) : lines_(lines) {
    layout_.skipped.assign(lines.size(), false);
    for (std::size_t i = 0; i + 1 < lines.size(); ++i)
      if (lines[i] == "Stein Information:") skip(i + 1);
    if (name.ends_with(".imd"))
      skip(lastLine());
    else if (name.ends_with(".sam"))
      prepRecord(0);
    else if (name.ends_with(".spc"))
      velsRecord(modelRecord(prepRecord(0)));
    else if (name.ends_with(".psc"))
      project();
  }

  Layout take() { return std::move(layout_); }

 private:
  void skip(std::size_t line) {
    if (line < lines_.size()) layout_.skipped[line] = true;
  }

  std::size_t lastLine() const { return lines_.size() - (lines_.back().empty() && lines_.size() > 1 ? 2 : 1); }

  std::size_t find(std::size_t from, std::string_view ending) const {
    while (from < lines_.size() && !lines_[from].ends_with(ending)) ++from;
    return from;
  }

  // Returns the line behind the sample file's name. That line ends in ".sam" in the expected files; without a sample
  // file the record's end isn't found and nothing is skipped.
  std::size_t prepRecord(std::size_t start) {
    std::size_t i = addTable(layout_, lines_, start + 1);
    const std::size_t end = find(i, ".sam");
    for (; i < end; ++i)
      if (lines_[i] == "Fixed samples") addTable(layout_, lines_, i + 3);
    if (end == lines_.size()) return end;
    skip(end - 1);
    skip(end);
    return end + 1;
  }

  // `start` is the line behind the sample file's name. Returns the line behind the record.
  std::size_t modelRecord(std::size_t start) {
    if (start >= lines_.size()) return start;
    skip(start + 1);
    skip(start + 2);
    std::size_t i = start + 5;
    if (countAt(lines_, start + 3) == 0) {
      i = find(i, ".imd");
      skip(i);
      ++i;
    }
    const std::size_t runs = countAt(lines_, i);
    i += 3 + countAt(lines_, i + 1);  // counts, names, time mode
    for (std::size_t run = 0; run < runs && i < lines_.size(); ++run) i += 2 + countAt(lines_, i + 1);
    skip(i);
    skip(i + 1);
    return i + 2;
  }

  void velsRecord(std::size_t start) {
    const std::size_t outputs = start + 1 + countAt(lines_, start);
    skip(outputs + 1 + 2 * countAt(lines_, outputs));
  }

  // Three records, each with a header line. The Prep record brings the empty line before the Model record's header.
  void project() {
    std::size_t i = 0;
    i = lines_[i] == "Prep Configuration" ? prepRecord(i + 1) + 1 : i + 1;
    if (i < lines_.size() && lines_[i] == "Model Configuration")
      i = modelRecord(i) + 1;
    else
      ++i;
    if (i < lines_.size() && lines_[i] == "Vels Configuration") velsRecord(i + 1);
  }

  const Lines& lines_;
  Layout layout_;
};

// Whether two words that differ are numbers near enough, both written at `precision`.
bool numbersAgree(std::string_view expected, std::string_view actual, int precision, double columnSize) {
  double a = 0;
  double e = 0;
  if (!isNumber(expected, e) || !isNumber(actual, a) || !std::isfinite(e) || !std::isfinite(a)) return false;
  if (numberText(e, precision) != expected || numberText(a, precision) != actual) return false;
  const double difference = std::fabs(a - e);
  const double size = std::max(std::fabs(a), std::fabs(e));
  if (precision == kTablePrecision) return difference <= std::max(1e-9 * size, 1e-12 * columnSize) * kRounding;
  const double unit = std::pow(10.0, std::floor(std::log10(size)) - (kPrecision - 1));
  return difference <= std::max(unit, 1e-11) * kRounding;
}

bool linesAgree(std::string_view expected, std::string_view actual, const Table* table, std::size_t lineInTable) {
  if (expected == actual) return true;
  std::size_t e = 0;
  std::size_t a = 0;
  for (std::size_t word = 0;; ++word) {
    const std::string_view expectedWord = wordAt(expected, e);
    const std::string_view actualWord = wordAt(actual, a);
    if (expectedWord != actualWord) {
      const std::size_t column = table != nullptr && table->byFactor ? lineInTable : word;
      const double size = table != nullptr && column < table->columnSizes.size() ? table->columnSizes[column] : 0.0;
      if (!numbersAgree(expectedWord, actualWord, table != nullptr ? kTablePrecision : kPrecision, size)) return false;
    }
    e += expectedWord.size();
    a += actualWord.size();
    if (e == expected.size() || a == actual.size()) return e == expected.size() && a == actual.size();
    if (expected[e++] != actual[a++]) return false;
  }
}

}  // namespace

std::string goldenPath(const std::string& name) {
  return std::string(TARVEX_TEST_DATA "/golden/") + name;
}

testing::AssertionResult compareTexts(const std::string& name, std::string_view expected, std::string_view actual) {
  const Lines expectedLines = splitLines(expected);
  const Lines actualLines = splitLines(actual);
  const Layout layout = LayoutMaker(name, expectedLines).take();
  std::string shown;
  std::size_t differing = 0;
  for (std::size_t i = 0; i < std::min(expectedLines.size(), actualLines.size()); ++i) {
    if (layout.skipped[i]) continue;
    const auto table = std::find_if(layout.tables.begin(), layout.tables.end(),
                                    [i](const Table& t) { return i >= t.first && i < t.end; });
    const bool inTable = table != layout.tables.end();
    if (linesAgree(expectedLines[i], actualLines[i], inTable ? &*table : nullptr, inTable ? i - table->first : 0))
      continue;
    if (++differing <= kMaxShown)
      shown +=
          "\nline " + std::to_string(i + 1) + "\n  expected: " + expectedLines[i] + "\n  actual:   " + actualLines[i];
  }
  if (differing == 0 && expectedLines.size() == actualLines.size()) return testing::AssertionSuccess();
  return testing::AssertionFailure() << name << ": " << differing << " lines differ, " << actualLines.size()
                                     << " lines instead of " << expectedLines.size() << shown;
}

testing::AssertionResult compareGolden(const std::string& expectedPath, std::string_view actual) {
  const std::string path = expectedPath.starts_with('/') ? expectedPath : goldenPath(expectedPath);
  const std::string expected = readFile(path);
  if (expected.empty()) return testing::AssertionFailure() << path << " is missing or empty";
  return compareTexts(path, expected, actual);
}

}  // namespace tarvex::test
