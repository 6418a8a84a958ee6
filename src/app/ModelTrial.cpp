#include "app/ModelTrial.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string_view>

#include "app/ExternalRun.h"
#include "app/FrontEnd.h"
#include "app/KeptFile.h"
#include "base/Paths.h"
#include "base/ScratchDirectory.h"
#include "base/TextWriter.h"
#include "base/WorkingFile.h"
#include "model/CellsRun.h"
#include "model/EquationValues.h"
#include "model/ExternalProcess.h"
#include "model/ModelChoice.h"
#include "model/ModelOutputReader.h"
#include "model/ModelResults.h"
#include "model/SpreadsheetApplication.h"
#include "model/SpreadsheetRun.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/RandomSampler.h"
#include "sampling/SampleFiles.h"

namespace tarvex {

namespace {

using Clock = std::chrono::steady_clock;

constexpr const char* kStopped = "The trial was stopped.";
constexpr const char* kWorkbookError = "Error in the Excel model execution";
constexpr const char* kOutputError = "Error reading model output file";

std::string beginningOf(const std::string& path, std::size_t most) {
  std::ifstream in(path, std::ios::binary);
  std::string line;
  std::getline(in, line);  // that of the log itself
  std::string text(most, '\0');
  in.read(text.data(), static_cast<std::streamsize>(most));
  text.resize(static_cast<std::size_t>(std::max<std::streamsize>(in.gcount(), 0)));
  return text;
}

double secondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

// The line that "PATH:12: expected a number" tells of; 0: none.
std::size_t lineIn(const std::string& problem, const std::string& path) {
  const std::size_t at = problem.find(path + ':');
  return at == std::string::npos ? 0 : std::strtoul(problem.c_str() + at + path.size() + 1, nullptr, 10);
}

}  // namespace

bool ModelTrial::serve() {
  isStopped_ = isStopped_ || (means_.serve && !means_.serve());
  return !isStopped_;
}

bool ModelTrial::fail(const std::string& problem) {
  report_.problem = problem;
  return false;
}

TrialReport ModelTrial::run(std::int32_t row) {
  report_ = {};
  isStopped_ = false;
  std::string message;
  const auto start = Clock::now();
  const bool readsOnly = choice_.kind == kNoModelToStart;
  if (!readTrialRow(prep_, row, report_.row, message) && !readsOnly)
    report_.isGood = fail(message);
  else if (choice_.kind == kInternalModel)
    report_.isGood = tryEquations();
  else if (choice_.spreadsheet != 0)
    report_.isGood = tryWorkbook();
  else if (readsOnly)
    report_.isGood = understand(absolutePath(existingPath(choice_.outputFile)), false);
  else
    report_.isGood = tryProgram();
  if (report_.seconds == 0.0) report_.seconds = secondsSince(start);
  return std::move(report_);
}

bool ModelTrial::tryEquations() {
  const InternalModel* const model = choice_.internalModel();
  if (model == nullptr) return fail("   No internal model loaded");
  const std::vector<EquationValue> values = evaluateEquations(*model, inputsOf(*model, report_.row));
  for (std::size_t i = 0; i < values.size(); ++i) {
    report_.names.push_back(model->expressions()[i].name);
    report_.values.push_back(values[i].value);
    report_.reasons.push_back(values[i].reason);
  }
  if (model->variables().size() != report_.row.values.size())
    return fail("The number of model inputs differs from the number of factors in the generated sample");
  const auto failed = std::ranges::find_if(values, [](const EquationValue& value) { return !value.isKnown; });
  if (failed == values.end()) return true;
  return fail("Error evaluating model\n" + report_.names[static_cast<std::size_t>(failed - values.begin())] + ": " +
              failed->reason);
}

// A sample of the one run.
bool ModelTrial::makePrep(PrepConfiguration& single) {
  std::string message;
  if (!single.factors.copyFrom(prep_.factors, message)) return fail(message);
  const auto width = static_cast<std::int32_t>(report_.row.values.size());
  if (!single.samples.allocate(width) || single.samples.addRow(report_.row.values.data()) == 0)
    return fail(single.samples.errorText());
  single.sampler = std::make_unique<RandomSampler>();
  single.sampler->numSamples = 1;
  single.sampler->setNumFactors(width);
  single.factorNames = report_.row.names;
  SampleStatistics statistics;
  if (!statistics.compute(single.samples)) return fail(single.samples.errorText());
  single.sampleStatistics = std::move(statistics);
  return true;
}

// In the form that the model gets in a run: that of an imported sample is the imported one.
bool ModelTrial::writeSample(const std::string& path) {
  if (prep_.external != 1) {
    PrepConfiguration single;
    std::string message;
    if (!makePrep(single)) return false;
    single.sampleFile = path;
    return saveSampleFile(path, single, message) || fail(message);
  }
  TextWriter out(path);
  out.setPrecision(sampValues::kTextPrecision);
  out << 1 << '\n' << report_.row.names.size() << '\n';
  for (const std::string& name : report_.row.names) out << name << '\n';
  out.writeNumbers(report_.row.values.data(), report_.row.values.size(), '\t');
  out << '\n';
  return out.commit() || fail(out.problem());
}

bool ModelTrial::tryProgram() {
  const ScratchDirectory scratch;
  const std::string sample = scratch.path() + "/trial.sam";
  if (scratch.path().empty()) return fail("No directory can be made in " + WorkingFile::directory());
  if (!writeSample(sample)) return false;
  const std::string output = absolutePath(choice_.outputFile);
  KeptFile kept(output);
  if (!kept.problem().empty()) return fail(kept.problem());
  const bool isGood = startProgram(sample, scratch.path()) && understand(output, true);
  const std::string left = kept.putBack();
  return left.empty() ? isGood : fail(report_.problem + (isGood ? "" : "\n") + left);
}

bool ModelTrial::startProgram(const std::string& sample, const std::string& directory) {
  const std::string output = absolutePath(choice_.outputFile);
  ModelCommand command;
  std::string message;
  if (!makeModelCommand(choice_.executable, sample, output, command, message))
    return fail(std::string(kNotLoaded) + '\n' + message);
  report_.command = command.text();
  report_.directory = means_.directory.empty() ? absolutePath(".") : means_.directory;
  ExternalProcess process;
  const std::string log = directory + "/trial.log";
  const auto start = Clock::now();
  if (!process.start(
          {existingPath(command.program), command.arguments, means_.directory, log, -1, {"TARVEX_OUTPUT=" + output}}))
    return fail(std::string(kNotLoaded) + "\nError " + std::to_string(process.error()) + "\ncmd: " + report_.command +
                '\n' + command.program + ": " + std::strerror(process.error()));
  while (process.poll() == ExternalProcess::State::Running && serve()) process.wait(kEventSlice);
  const ExternalProcess::State state = process.poll();
  if (isStopped_) process.stop();
  report_.seconds = secondsSince(start);
  report_.printed = beginningOf(log, TrialReport::kMostPrinted);
  if (isStopped_) return fail(kStopped);
  if (state != ExternalProcess::State::Ended) return fail("Lost connection to model execution");
  report_.exitCode = process.exitCode();
  return process.exitCode() == 0 ||
         fail("Model execution returned with error code\nThe code is " + std::to_string(process.exitCode()) + '.');
}

// Reads an output file as a run does, and keeps the lines that a person wants to see beside it.
bool ModelTrial::understand(const std::string& path, bool oneRun) {
  report_.outputFile = path;
  ModelResults results;
  std::string warnings;
  ModelOutputReader reader(results, [&](const std::string&, const std::string& text) { warnings += text + '\n'; });
  const Progress progress([this](double) { return serve(); });
  const bool isRead = reader.read(path, 0, progress);
  if (!isRead) report_.badLine = lineIn(reader.errorText(), path);
  if (!isStopped_) readLines(path);
  if (isStopped_) return fail(kStopped);
  report_.warnings = warnings;
  return isRead ? takeRun(results, oneRun) : fail(std::string(kOutputError) + '\n' + reader.errorText());
}

// The first run of what was read.
bool ModelTrial::takeRun(const ModelResults& results, bool oneRun) {
  report_.names = results.outputNames();
  if (results.runCount() == 0 || !results.readRun(0, report_.values)) return fail(results.errorText());
  if (results.hasTimeAxis()) report_.times = results.times(0);
  return !oneRun || results.runCount() == 1 ||
         fail("The output file has " + std::to_string(results.runCount()) +
              " runs, but the sample that the model was given has one.");
}

// The file may be a single line of gigabytes: the user is served meanwhile.
void ModelTrial::readLines(const std::string& path) {
  constexpr std::size_t kBlock = std::size_t{1} << 20;
  const std::size_t context = TrialReport::kMostLines / 2;
  report_.firstLine = report_.badLine > context ? report_.badLine - context : 1;
  std::ifstream in(path, std::ios::binary);
  std::string block(kBlock, '\0');
  std::string line;
  std::size_t number = 1;
  std::size_t shown = 0;  // bytes
  bool isBegun = false;
  const auto endLine = [&] {
    if (number++ >= report_.firstLine) report_.lines.push_back(line);
    line.clear();
    isBegun = false;
  };
  while (in && shown < TrialReport::kMostRead && report_.lines.size() < TrialReport::kMostLines && serve()) {
    in.read(block.data(), static_cast<std::streamsize>(kBlock));
    std::string_view rest(block.data(), static_cast<std::size_t>(in.gcount()));
    while (!rest.empty() && report_.lines.size() < TrialReport::kMostLines) {
      const std::size_t length = std::min(rest.find('\n'), rest.size());
      line.append(rest.substr(0, std::min(length, TrialReport::kMostOfLine - line.size())));
      isBegun = length == rest.size();
      if (!isBegun) endLine();
      rest.remove_prefix(std::min(length + 1, rest.size()));
    }
    if (number >= report_.firstLine) shown += kBlock;
  }
  if (isBegun && report_.lines.size() < TrialReport::kMostLines) endLine();
}

bool ModelTrial::tryCells() {
  PrepConfiguration single;
  if (!makePrep(single)) return false;
  const std::unique_ptr<SpreadsheetApplication> application = makeApplication();
  std::string told;
  CellsRun run(*application, [&](const std::string&, const std::string& text) { told += '\n' + text; });
  ModelResults results;
  const bool isGood = run.run(choice_, single, results);
  if (isStopped_) return fail(kStopped);
  if (!isGood)
    return fail(std::string(kWorkbookError) + told + (run.errorText().empty() ? "" : '\n' + run.errorText()));
  report_.warnings = told.substr(told.empty() ? 0 : 1);
  return takeRun(results, true);
}

std::unique_ptr<SpreadsheetApplication> ModelTrial::makeApplication() {
  return means_.makeApplication([this] { return serve(); });
}

// On a copy: the user's workbook stays as it is.
bool ModelTrial::tryWorkbook() {
  if (choice_.drivesCells()) return tryCells();
  const ScratchDirectory scratch;
  const std::filesystem::path book = absolutePath(existingPath(choice_.outputFile));
  if (scratch.path().empty()) return fail("No directory can be made in " + WorkingFile::directory());
  ModelChoice copy = choice_;
  copy.outputFile = scratch.path() + "/trial" + book.extension().string();
  std::error_code error;
  std::filesystem::copy_file(book, copy.outputFile, error);
  if (error) return fail("   No output model file\n" + book.string() + ": " + error.message());
  PrepConfiguration single;
  const bool readsOnly = choice_.kind == kNoModelToStart;
  if (!readsOnly && !makePrep(single)) return false;
  const std::unique_ptr<SpreadsheetApplication> application = makeApplication();
  std::string told;
  SpreadsheetRun run(*application, SpreadsheetRun::Attendance::Nobody,
                     [&](const std::string&, const std::string& text) { told += '\n' + text; });
  ModelResults results;
  if (run.run(copy, single, results)) {
    report_.warnings = told.substr(told.empty() ? 0 : 1);
    return takeRun(results, !readsOnly);
  }
  if (isStopped_) return fail(kStopped);
  std::string problem = told + (run.errorText().empty() ? "" : '\n' + run.errorText());
  if (const std::size_t at = problem.find(copy.outputFile); at != std::string::npos)
    problem.replace(at, copy.outputFile.size(), book.string());
  return fail(std::string(kWorkbookError) + problem);
}

}  // namespace tarvex
