#include <utility>

#include "app/RunController.h"
#include "base/Paths.h"
#include "batch/CommandFiles.h"
#include "batch/Commands.h"
#include "batch/TextTable.h"
#include "model/ModelRequest.h"
#include "postproc/PostProcessorFile.h"
#include "sampling/SampleFiles.h"

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
  const std::string& file = request.execute && !request.spreadsheet ? request.executable : request.outputFile;
  message = aboutFile(refusal->text, request.internal ? options.modelFile : file);
  return false;
}

// Loads the sample and runs the model over it, both under absolute paths, whatever the model takes for its directory.
// The records keep the paths that the user knows.
bool runOverSample(const RunOptions& options, RunController& controller, const Console& console, std::string& message) {
  const std::string sampleFile = absolutePath(options.sampleFile);
  ProjectConfiguration& project = controller.project;
  ModelChoice& model = project.model.choice;
  controller.modelDirectory = absolutePath(".");
  controller.userAtWorkbook = false;
  const std::string executable = model.executable;
  const std::string outputFile = model.outputFile;
  if (model.spreadsheet == 0) model.executable = absolutePath(executable);
  model.outputFile = absolutePath(outputFile);
  if (!loadSampleFile(options.sampleFile, project.prep, message, console.watched())) {
    message = aboutFile(message, options.sampleFile);
    return false;
  }
  console.warn(std::exchange(message, {}));
  project.hasPrep = project.hasModel = true;
  const std::string recorded = std::exchange(project.prep.sampleFile, sampleFile);
  if (!controller.runModel(true)) return false;
  project.prep.sampleFile = recorded;
  model.executable = executable;
  model.outputFile = outputFile;
  return true;
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
  files.writes("post-processor file", options.output, messages::kPostProcessorFile);
  return files.check(message);
}

}  // namespace

int runRun(const RunOptions& options, const Console& console) {
  RunController controller(console.frontEnd);
  ProjectConfiguration& project = controller.project;
  std::string message;
  if (!checkFiles(options, message)) return console.fail(message);
  if (!chooseModel(options, project.model.choice, message)) return console.fail(message);
  console.warn(std::exchange(message, {}));
  if (!runOverSample(options, controller, console, message)) return message.empty() ? kFailed : console.fail(message);
  if (!savePostProcessorFile(options.output, project.prep, project.model, project.vels, message, console.watched()))
    return console.fail(message);
  console.out << counted(project.model.results.runCount(), "run") << ", "
              << counted(project.model.results.outputCount(), "output") << ": " << options.output << '\n';
  return kSucceeded;
}

}  // namespace tarvex
