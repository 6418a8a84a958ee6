#include <limits>

#include "base/RememberedDirectories.h"
#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "model/ModelConfiguration.h"

namespace tarvex {

namespace {

constexpr std::size_t kMaxDirectory = 1023;
constexpr std::size_t kKeptName = 28;  // Kept: longer names of outputs come back cut.
constexpr std::size_t kAnyDistance = std::numeric_limits<std::size_t>::max();

bool readInRange(TextReader& in, const char* what, std::int32_t& value, std::int32_t largest) {
  in.expect(what) >> value;
  if (in.fail()) return false;
  const bool good = value >= 0 && value <= largest;
  return good || in.refuse(what + (" must be 0 to " + std::to_string(largest)) + ", not " + std::to_string(value));
}

bool readCount(TextReader& in, const char* what, std::int32_t& count) {
  return readInRange(in, what, count, std::numeric_limits<std::int32_t>::max());
}

}  // namespace

void ModelConfiguration::write(TextWriter& out) const {
  ModelChoice::kExecutableRule.write(out, choice.executable);
  ModelChoice::kOutputFileRule.write(out, choice.outputFile);
  out << choice.kind << '\n' << choice.spreadsheet << '\n';
  if (choice.kind == kInternalModel) {
    InternalModel none;
    (choice.internalModel() != nullptr ? *choice.internalModel() : none).write(out);
  }
  // Behind the number, where a reader that knows no cells passes over them.
  const std::string cells = choice.cells.text();
  out << results.runCount() << '\n' << results.outputCount() << (cells.empty() ? "" : "\t") << cells << '\n';
  for (const std::string& name : results.outputNames()) out << name << '\n';
  out << results.timeMode() << '\n';
  std::vector<double> values;
  for (std::int32_t run = 0; run < results.runCount() && out.ok(); ++run) {
    const std::vector<double>& times = results.times(run);
    if (!results.readRun(run, values)) {
      out.refuse(results.errorText());
      return;
    }
    out << "Run " << run << '\n' << times.size() << '\n';
    auto value = values.begin();
    for (const double time : times) {
      out << "t=" << time << '\t';
      for (std::int32_t i = 0; i < results.outputCount(); ++i) out << *value++ << '\t';
      out << '\n';
    }
  }
  out << RememberedDirectories::get(RememberedDirectories::Model) << '\n';
  out << RememberedDirectories::get(RememberedDirectories::ModelOutput) << '\n';
}

std::uint64_t recordBytes(const ModelConfiguration& model) {
  constexpr std::uint64_t kNumber = 9;  // of six digits, the tab behind it included
  const ModelResults& results = model.results;
  std::uint64_t lines = 0;
  for (std::int32_t run = 0; run < results.runCount(); ++run)
    lines += static_cast<std::uint64_t>(results.timeCount(run));
  return lines * static_cast<std::uint64_t>(results.outputCount() + 2) * kNumber;
}

bool ModelConfiguration::read(TextReader& in) {
  *this = ModelConfiguration();
  std::int32_t runs = 0;
  std::int32_t outputs = 0;
  if (!readChoice(in)) return false;
  if (!readCount(in, "the number of runs", runs) || !readCount(in, "the number of outputs", outputs)) return false;
  if (!readCells(in)) return false;
  std::int32_t timeMode = kNoTimeAxis;
  if (!readNames(in, outputs) || !readInRange(in, "the time mode", timeMode, kSharedGrid)) return false;
  if (!readRuns(in, runs)) return false;
  if (!results.setTimeMode(timeMode))
    return in.refuse("the times of the runs are not those of the time mode " + std::to_string(timeMode));
  std::string modelDirectory;
  std::string outputDirectory;
  in.skipLine();
  in.expect("the directory of models").readLine(modelDirectory, kMaxDirectory);
  in.expect("the directory of model outputs").readLine(outputDirectory, kMaxDirectory);
  if (in.fail()) return false;
  RememberedDirectories::set(RememberedDirectories::Model, modelDirectory);
  RememberedDirectories::set(RememberedDirectories::ModelOutput, outputDirectory);
  return true;
}

bool ModelConfiguration::readChoice(TextReader& in) {
  in.skipLine();  // the empty line that stands before the record
  if (!ModelChoice::kExecutableRule.read(in, choice.executable)) return false;
  if (!ModelChoice::kOutputFileRule.read(in, choice.outputFile)) return false;
  if (!readInRange(in, "the kind of model", choice.kind, kNoModelToStart)) return false;
  if (!readInRange(in, "the spreadsheet flag", choice.spreadsheet, 1)) return false;
  if (choice.kind != kInternalModel) return true;
  in.skipLine();
  choice.setInternalModel(std::make_unique<InternalModel>());
  return choice.internalModel()->read(in);
}

bool ModelConfiguration::readCells(TextReader& in) {
  std::string rest;
  std::string problem;
  in.readLinePart(&rest, kAnyDistance);
  if (in.fail() || !rest.starts_with('\t')) return in.ok();
  return parseWorkbookCells(std::string_view(rest).substr(1), choice.cells, problem) || in.refuse(problem);
}

bool ModelConfiguration::readNames(TextReader& in, std::int32_t count) {
  OutputNames names([this](const std::string& /*title*/, const std::string& text) {
    warningText += (warningText.empty() ? "" : "\n") + text;
  });
  std::string line;
  for (std::int32_t i = 0; i < count; ++i) {
    if (!in.expect("the name of an output").readLineCut(line, kKeptName)) return false;
    names.addApart(line, line);
  }
  results.reset(names.release());
  return true;
}

bool ModelConfiguration::readRuns(TextReader& in, std::int32_t count) {
  std::vector<double> times;
  std::vector<double> values;
  for (std::int32_t run = 0; run < count; ++run) {
    std::int32_t points = 0;
    in.skipLine();
    in.skipLine();  // "Run" and its number
    if (!readCount(in, "the number of times of a run", points)) return false;
    times.clear();
    values.clear();
    for (std::int32_t i = 0; i < points; ++i) {
      double number = 0.0;
      in.expect("a line with t= and a time").skipPast('=', kAnyDistance);
      in.expect("a time") >> number;
      times.push_back(number);
      for (std::int32_t k = 0; k < results.outputCount() && in.ok(); ++k) {
        in.expect("a value of an output") >> number;
        values.push_back(number);
      }
      if (in.fail()) return false;
    }
    if (!results.appendRun(times, values)) return in.refuse(results.errorText());
  }
  return true;
}

}  // namespace tarvex
