#include <utility>

#include "app/RunController.h"
#include "base/Paths.h"
#include "batch/CommandFiles.h"
#include "batch/Commands.h"
#include "model/ModelRequest.h"
#include "postproc/PostProcessorFile.h"
#include "report/TextTable.h"

namespace tarvex {

namespace {

// What stands in the record in the executable's place.
constexpr const char* kSpreadsheet = "Excel Application";

bool chooseModel(const RunOptions& options, ModelChoice& choice, std::string& message) {
  ModelRequest request;
  request.internal = !options.modelFile.empty();
  request.spreadsheet = options.workbook.has_value();
  request.execute = request.spreadsheet ? !options.readOnly : options.executable.has_value();
  request.executable = request.spreadsheet ? kSpreadsheet : options.executable.value_or("");
  request.outputFile = options.workbook.value_or(options.modelOutput);
  if (request.internal) {
    auto equations = std::make_unique<InternalModel>();
    if (!loadModelFile(options.modelFile, *equations, message)) return false;
    choice.setInternalModel(std::move(equations));
  }
  const std::optional<Refusal> refusal = acceptModelRequest(request, choice);
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
  files.reads("program", options.executable.value_or(""));
  files.reads("workbook", options.workbook.value_or(""));
  if (options.executable && !options.modelOutput.empty()) {
    files.leavesToModel("output file of the model", options.modelOutput);
    files.leavesToModel("log file of the model", options.modelOutput + ".log");
  } else {
    files.reads("output file of the model", options.modelOutput);
  }
  files.writes("post-processor file", options.output, kResultsNotWritten);
  return files.check(message);
}

}  // namespace

int runRun(const RunOptions& options, const Console& console) {
  RunController controller(console.frontEnd);
  ModelChoice model;
  std::string message;
  if (!checkFiles(options, message) || !chooseModel(options, model, message)) return console.fail(message);
  console.warn(std::exchange(message, {}));
  if (!runOverSample(options, std::move(model), controller) ||
      controller.saveResultsFile(options.output) != Outcome::Done)
    return kFailed;
  const ModelResults& results = controller.project().model.results;
  console.out << counted(results.runCount(), "run") << ", " << counted(results.outputCount(), "output") << ": "
              << options.output << '\n';
  return kSucceeded;
}

}  // namespace tarvex
