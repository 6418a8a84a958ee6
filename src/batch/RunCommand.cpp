#include <algorithm>
#include <charconv>
#include <utility>

#include "app/ModelTrial.h"
#include "app/RunController.h"
#include "base/Paths.h"
#include "batch/CommandFiles.h"
#include "batch/Commands.h"
#include "batch/PartsModel.h"
#include "batch/PartsRun.h"
#include "batch/StopSignals.h"
#include "batch/TrialFigures.h"
#include "model/ModelChoice.h"
#include "model/ModelCommand.h"
#include "model/ModelRequest.h"
#include "postproc/PostProcessorFile.h"
#include "report/TextTable.h"

namespace tarvex {

namespace {

bool readCells(const std::vector<std::string>& texts, std::vector<NamedCell>& cells, std::string& message) {
  return std::ranges::all_of(
      texts, [&](const std::string& text) { return parseNamedCell(text, cells.emplace_back(), message); });
}

bool chooseModel(const RunOptions& options, ModelChoice& choice, std::string& message) {
  ModelRequest request;
  request.internal = !options.modelFile.empty();
  request.spreadsheet = options.workbook.has_value();
  request.execute = request.spreadsheet ? !options.readOnly : options.executable.has_value();
  request.executable = request.spreadsheet ? kSpreadsheetProgram : options.executable.value_or("");
  request.outputFile = options.workbook.value_or(options.modelOutput);
  if (!readCells(options.inputCells, request.cells.inputs, message) ||
      !readCells(options.outputCells, request.cells.outputs, message))
    return false;
  if (request.internal) {
    auto equations = std::make_unique<InternalModel>();
    if (!loadModelFile(options.modelFile, *equations, message)) return false;
    choice.setInternalModel(std::move(equations));
  }
  const std::optional<ModelRefusal> refusal = acceptModelRequest(request, choice);
  if (!refusal) return true;
  message = request.internal ? aboutFile(refusal->text, options.modelFile) : refusal->text;
  return false;
}

// Loads the sample and runs the model over it, from the current directory.
bool runOverSample(const RunOptions& options, ModelChoice model, RunController& controller) {
  controller.modelDirectory = absolutePath(".");
  controller.userAtWorkbook = false;
  return controller.loadSampleFile(options.sampleFile) == Outcome::Done &&
         controller.acceptModel(std::move(model)) == Outcome::Done &&
         controller.runModel(RunController::SampleUse::Existing) == Outcome::Done;
}

// With a program, the model's output file is the program's to write.
bool checkFiles(const RunOptions& options, std::string& message) {
  CommandFiles files;
  files.reads("sample file", options.sampleFile);
  files.reads("internal model", options.modelFile);
  files.reads("program", programOf(options.executable.value_or("")));
  files.reads("workbook", options.workbook.value_or(""));
  // In parts it lies in the directories of these.
  const bool isInParts = options.parts.any() && !options.modelOutput.starts_with('/');
  if (options.executable && !options.modelOutput.empty() && !isInParts) {
    files.leavesToModel("output file of the model", options.modelOutput);
    files.leavesToModel("log file of the model", options.modelOutput + ".log");
  } else if (!isInParts) {
    files.reads("output file of the model", options.modelOutput);
  }
  if (options.tryRow.empty()) files.writes("post-processor file", options.output, kResultsNotWritten);
  return files.check(message);
}

// Row 1 is 0. False for what is neither a row nor the means.
bool rowOf(const std::string& word, std::int32_t& row) {
  const char* const end = word.data() + word.size();
  const auto parsed = std::from_chars(word.data(), end, row);
  if (parsed.ec == std::errc() && parsed.ptr == end && row-- >= 1) return true;
  row = TrialRow::kMeans;
  return word == "means";
}

int tryOneRun(const RunOptions& options, const ModelChoice& model, const Console& console) {
  std::int32_t row = 0;
  if (!rowOf(options.tryRow, row)) return console.fail("--try takes a row of the sample or \"means\"");
  RunController controller(console.frontEnd);
  controller.modelDirectory = absolutePath(".");
  controller.userAtWorkbook = false;
  if (controller.loadSampleFile(options.sampleFile) != Outcome::Done) return kFailed;
  TrialReport report;
  const auto serve = [] { return !StopSignals::requested(); };
  const bool isGood = controller.tryModel(model, row, serve, report) == Outcome::Done;
  console.warn(report.warnings.substr(0, report.warnings.find_last_not_of('\n') + 1));
  printTrial(report, console.out);
  return isGood ? kSucceeded : console.fail(report.problem);
}

}  // namespace

int runRun(const RunOptions& options, const Console& console) {
  RunController controller(console.frontEnd);
  ModelChoice model;
  std::string message;
  if (!checkFiles(options, message) || !chooseModel(options, model, message)) return console.fail(message);
  console.warn(std::exchange(message, {}));
  if (!options.tryRow.empty()) return tryOneRun(options, model, console);
  if (options.parts.any()) return runInParts(options, std::move(model), console);
  if (!runOverSample(options, std::move(model), controller) ||
      controller.saveResultsFile(options.output) != Outcome::Done)
    return kFailed;
  const ModelResults& results = controller.project().model.results;
  console.out << counted(results.runCount(), "run") << ", " << counted(results.outputCount(), "output") << ": "
              << options.output << '\n';
  return kSucceeded;
}

}  // namespace tarvex
