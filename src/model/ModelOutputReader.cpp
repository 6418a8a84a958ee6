#include <charconv>

#include "base/Names.h"
#include "base/TextReader.h"
#include "model/ModelConfiguration.h"

namespace tarvex {

namespace {

constexpr std::size_t kShortLine = 19;  // characters read of the lines that hold one word or number
constexpr std::size_t kMaxNameLine = 255;

// The next output's name, fit for expressions. False when the line holds none.
bool readName(TextReader& in, const ModelConfiguration::Warn& warn, std::string& name) {
  std::string line;
  if (!in.readLine(line, kMaxNameLine)) return false;
  name = line.substr(0, line.find_first_of(" \t"));
  return fitOutputName(name, warn);
}

// A line of a word and the run's number.
bool readRunLine(TextReader& in, std::int32_t run) {
  std::string line;
  if (!in.readLine(line, kShortLine)) return false;
  const std::string_view word = firstWord(line);
  if (word.empty()) return false;
  std::string_view rest(word.data() + word.size(),
                        static_cast<std::size_t>(line.data() + line.size() - (word.data() + word.size())));
  rest = firstWord(rest);
  if (rest.starts_with('+')) rest.remove_prefix(1);
  std::int32_t number = -1;
  const auto parsed = std::from_chars(rest.data(), rest.data() + rest.size(), number);
  return parsed.ec == std::errc() && number == run;
}

}  // namespace

bool ModelConfiguration::readModelOutput(const Warn& warn) {
  clearResults();
  internalModel_.reset();
  TextReader in = TextReader::fromFile(outputFile);
  std::int32_t runs = 0;
  if (!readOutputHeader(in, warn, runs)) return false;
  std::vector<double> times;
  std::vector<double> row(outputNames_.size());
  for (std::int32_t run = 0; run < runs; ++run) {
    if (!readOutputRun(in, run, times, row)) return false;
    runTimes_.addRuns(1, times);
  }
  if (timeMode == kReadingTimes) timeMode = runTimes_.allEqual() ? kSharedGrid : kDifferentGrids;
  return true;
}

bool ModelConfiguration::readOutputHeader(TextReader& in, const Warn& warn, std::int32_t& runs) {
  std::int32_t outputs = 0;
  in >> outputs;
  in.readLinePart(nullptr, kShortLine);
  if (in.fail() || outputs < 1) return false;
  for (std::int32_t i = 0; i < outputs; ++i) {
    std::string name;
    if (!readName(in, warn, name)) return false;
    outputNames_.push_back(name);
  }
  std::string answer;
  in.skipPast('=', kShortLine);
  in.readLine(answer, kShortLine);
  timeMode = firstWord(answer) == "yes" ? kReadingTimes : kNoTimeAxis;
  in >> runs;
  in.readLinePart(nullptr, kShortLine);
  return in.ok() && runs >= 1;
}

bool ModelConfiguration::readOutputRun(TextReader& in, std::int32_t run, std::vector<double>& times,
                                       std::vector<double>& row) {
  std::int32_t points = 1;
  times.clear();
  if (timeMode == kReadingTimes) {
    if (!readRunLine(in, run)) return false;
    in >> points;
    if (points < 1) return false;
  }
  for (std::int32_t i = 0; i < points && in.ok(); ++i) {
    double time = 0.0;
    if (timeMode == kReadingTimes) in >> time;
    times.push_back(time);
    for (double& value : row) in >> value;
    in.skipLine();
    if (in.ok() && !dataFile_.append(row.data(), row.size())) return false;
  }
  return in.ok();
}

}  // namespace tarvex
