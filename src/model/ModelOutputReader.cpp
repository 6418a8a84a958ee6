#include "model/ModelOutputReader.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "base/Names.h"
#include "base/NumberText.h"
#include "base/TextReader.h"
#include "base/textBehind.h"
#include "model/ModelResults.h"

namespace tarvex {

namespace {

constexpr std::size_t kShortLine = 19;  // characters read of the lines that hold one word or number
constexpr std::size_t kMaxNameLine = 255;
constexpr std::size_t kMaxNumber = 1023;   // characters; no sensible number is longer
constexpr std::uint64_t kBytesOfItem = 2;  // at least: a character and what parts it from the next

// A whole number that white space ends.
bool readWholeNumber(TextReader& in, const char* what, std::int32_t& count) {
  std::string_view word;
  if (!in.expect(what).readWord(word, kMaxNumber)) return false;
  if (word.starts_with('+')) word.remove_prefix(1);
  const auto parsed = std::from_chars(word.data(), word.data() + word.size(), count);
  if (parsed.ec == std::errc() && parsed.ptr == word.data() + word.size()) return true;
  return in.refuse("expected " + std::string(what) + ", found '" + std::string(word) + "'");
}

bool parseWhole(std::string_view word, double& number) {
  return parseNumber(word, number) == word.size();
}

// A number that white space ends.
bool readValue(TextReader& in, const char* what, double& number) {
  std::string_view word;
  if (!in.expect(what).readWord(word, kMaxNumber)) return false;
  if (parseWhole(word, number)) return true;
  std::string fortran(word);
  std::ranges::replace_if(
      fortran, [](char c) { return c == 'D' || c == 'd'; }, 'E');
  // An exponent of a number, and not the letter of any word.
  const bool isNumber = std::ranges::count(fortran, 'E') == 1 && parseWhole(fortran, number);
  return isNumber || in.refuse("expected " + std::string(what) + ", found '" + std::string(word) + "'");
}

// A line of a word and the run's number.
bool readRunLine(TextReader& in, std::int32_t run) {
  std::string line;
  if (!in.expect("a line with RUN and the run's number").readLine(line, kShortLine)) return false;
  const std::string_view word = firstWord(line);
  std::string_view rest(word.data() + word.size(),
                        static_cast<std::size_t>(line.data() + line.size() - (word.data() + word.size())));
  rest = firstWord(rest);
  if (rest.starts_with('+')) rest.remove_prefix(1);
  std::int32_t number = -1;
  const auto parsed = std::from_chars(rest.data(), rest.data() + rest.size(), number);
  if (!word.empty() && parsed.ec == std::errc() && number == run) return true;
  return in.refuse("expected the line RUN " + std::to_string(run) + ", found '" + line + "'");
}

}  // namespace

ModelOutputReader::ModelOutputReader(ModelResults& results, Warn warn) : results_(results), warn_(std::move(warn)) {}

bool ModelOutputReader::read(const std::string& path, std::int32_t firstRun, const Progress& progress) {
  joins_ = firstRun > 0 && results_.outputCount() > 0;
  const std::int32_t before = joins_ ? results_.runCount() : 0;
  if (!joins_) results_.clear();
  errorText_.clear();
  place_.clear();
  TextReader in = TextReader::fromFile(path, progress);
  if (readFile(in, firstRun)) {
    if (hasTimes_) results_.findTimeMode();
    if (const std::string rest = textBehind(in); !rest.empty()) warn_("Warning", rest);
    return true;
  }
  if (errorText_.empty()) errorText_ = in.problem() + place_;
  if (joins_)
    results_.cut(before);
  else
    results_.clear();
  return false;
}

bool ModelOutputReader::readFile(TextReader& in, std::int32_t firstRun) {
  std::int32_t runs = 0;
  if (!readNames(in) || !takeTimeMode(in) || !takeRunCount(in, runs)) return false;
  if (!joins_) results_.reset(names_, given_);
  for (std::int32_t run = 0; run < runs; ++run) {
    if (!readRun(in, run)) {
      place_ = " (run " + std::to_string(run) + place_ + ')';
      return false;
    }
    if (!store(run == 0 ? firstRun - results_.runCount() : 0)) return false;
  }
  return true;
}

bool ModelOutputReader::store(std::int32_t gap) {
  if (results_.appendMissing(gap, times_) && results_.appendRun(times_, values_)) return true;
  errorText_ = notStored(results_);
  return false;
}

bool ModelOutputReader::readNames(TextReader& in) {
  std::int32_t count = 0;
  if (!readWholeNumber(in, "the number of variables", count)) return false;
  if (count < 1) return in.refuse("the number of variables must be at least 1, not " + std::to_string(count));
  if (!in.checkCount(count, kBytesOfItem)) return false;
  in.readLinePart(nullptr, kShortLine);
  OutputNames taken(joins_ ? [](const auto&, const auto&) {} : warn_);
  std::string line;
  std::string reason;
  for (std::int32_t i = 0; i < count; ++i) {
    if (!in.expect("the name of a variable").readLine(line, kMaxNameLine)) return false;
    if (!taken.add(line, line.substr(0, line.find_first_of(" \t")), reason)) return in.refuse(reason);
  }
  given_ = taken.given();
  names_ = taken.release();
  return !joins_ || names_ == results_.outputNames() || in.refuse("these are not the outputs of the runs before");
}

bool ModelOutputReader::takeTimeMode(TextReader& in) {
  std::string answer;
  if (!in.expect("a line \"time = yes\" or \"time = no\"").skipPast('=', kShortLine)) return false;
  if (!in.readLine(answer, kShortLine)) return false;
  hasTimes_ = firstWord(answer) == "yes";
  return !joins_ || hasTimes_ == results_.hasTimeAxis() || in.refuse("a time axis belongs to all runs or to none");
}

bool ModelOutputReader::takeRunCount(TextReader& in, std::int32_t& runs) {
  if (!readWholeNumber(in, "the number of runs", runs)) return false;
  if (runs < 1) return in.refuse("the number of runs must be at least 1, not " + std::to_string(runs));
  if (!in.checkCount(runs, kBytesOfItem * names_.size() - 1)) return false;
  in.readLinePart(nullptr, kShortLine);
  return true;
}

bool ModelOutputReader::readRun(TextReader& in, std::int32_t run) {
  std::int32_t points = 1;
  if (hasTimes_) {
    if (!readRunLine(in, run) || !readWholeNumber(in, "the number of times", points)) return false;
    if (points < 1) return in.refuse("the number of times must be at least 1, not " + std::to_string(points));
    if (!in.checkCount(points, kBytesOfItem * names_.size() + 1)) return false;
  }
  times_.clear();
  values_.clear();
  for (std::int32_t i = 0; i < points; ++i) {
    double time = 0.0;
    if (hasTimes_ && !readValue(in, "a time", time)) return false;
    times_.push_back(time);
    if (!readRow(in)) return false;
  }
  return true;
}

bool ModelOutputReader::readRow(TextReader& in) {
  for (const std::string& name : names_) {
    double value = 0.0;
    if (!readValue(in, "a number", value)) {
      place_ = ", output " + name;
      return false;
    }
    values_.push_back(value);
  }
  in.skipLine();
  return in.ok();
}

}  // namespace tarvex
