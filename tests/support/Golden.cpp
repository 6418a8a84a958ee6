#include "support/Golden.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "base/NumberText.h"
#include "support/TextFiles.h"

namespace tarvex::test {
namespace {

constexpr double kRounding = 1.0 + 1e-9;  // the tolerances are compared with differences of rounded numbers
constexpr std::size_t kMaxShown = 5;

// The words of a line and its separators in turn.
std::vector<std::string_view> partsOf(std::string_view line) {
  std::vector<std::string_view> parts;
  for (std::size_t at = 0; at < line.size();) {
    const std::size_t end = std::min(line.find_first_of(" \t:=,;", at), line.size());
    parts.push_back(line.substr(at, std::max(end - at, std::size_t{1})));
    at += parts.back().size();
  }
  return parts;
}

bool isWrittenAt(int precision, std::string_view text, double value) {
  return numberText(value, precision) == text;
}

bool numbersAgree(std::string_view expected, std::string_view actual) {
  double e = 0;
  double a = 0;
  if (!isNumber(expected, e) || !isNumber(actual, a) || !std::isfinite(e) || !std::isfinite(a)) return false;
  const double difference = std::fabs(a - e);
  const double size = std::max(std::fabs(a), std::fabs(e));
  if (isWrittenAt(6, expected, e) && isWrittenAt(6, actual, a) && std::max(expected.size(), actual.size()) > 6)
    return difference <= std::max(std::pow(10.0, std::floor(std::log10(size)) - 5), 1e-11) * kRounding;
  return isWrittenAt(10, expected, e) && isWrittenAt(10, actual, a) &&
         (difference <= 1e-9 * size * kRounding || size <= 1e-12);
}

bool linesAgree(std::string_view expected, std::string_view actual) {
  // Where a file lies is the test's matter: an empty line or one with a slash or a file's suffix may hold another path.
  const auto isPlace = [](std::string_view line) {
    return line.empty() || line.starts_with('/') || line.ends_with(".sam") || line.ends_with(".imd") ||
           line.ends_with(".fac") || line.ends_with(".out") || line.ends_with(".txt");
  };
  if (expected == actual || (isPlace(expected) && isPlace(actual))) return true;
  const auto e = partsOf(expected);
  const auto a = partsOf(actual);
  return std::equal(e.begin(), e.end(), a.begin(), a.end(), [](std::string_view one, std::string_view other) {
    return one == other || numbersAgree(one, other);
  });
}

}  // namespace

std::string goldenPath(const std::string& name) {
  return std::string(TARVEX_TEST_DATA "/golden/") + name;
}

testing::AssertionResult compareGolden(const std::string& expectedName, std::string_view actual) {
  const std::vector<std::string> expectedLines = splitLines(readFile(goldenPath(expectedName)));
  const std::vector<std::string> actualLines = splitLines(actual);
  std::string shown;
  std::size_t differing = 0;
  for (std::size_t i = 0; i < std::min(expectedLines.size(), actualLines.size()); ++i)
    if (!linesAgree(expectedLines[i], actualLines[i]) && ++differing <= kMaxShown)
      shown += "\nline " + std::to_string(i + 1) + "\n  " + expectedLines[i] + "\n  " + actualLines[i];
  if (differing == 0 && expectedLines.size() == actualLines.size() && expectedLines.size() > 1)
    return testing::AssertionSuccess();
  return testing::AssertionFailure() << expectedName << ": " << differing << " lines differ, " << actualLines.size()
                                     << " lines instead of " << expectedLines.size() << shown;
}

}  // namespace tarvex::test
