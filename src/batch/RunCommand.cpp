#include <filesystem>

#include "app/RunController.h"
#include "batch/Commands.h"
#include "batch/TextTable.h"
#include "postproc/PostProcessorFile.h"
#include "sampling/SampleFiles.h"

namespace tarvex {

namespace {

bool chooseModel(const RunOptions& options, ModelConfiguration& model, std::string& message) {
  if (options.modelFile.empty()) {
    model.setExternal("", options.modelOutput, 0);
    model.kind = kNoModelToStart;
    return true;
  }
  auto equations = std::make_unique<InternalModel>();
  if (!loadModelFile(options.modelFile, *equations, message)) {
    message += "\n" + options.modelFile;
    return false;
  }
  if (equations->numOutputs() == 0) {
    message = "   Model produces no result\n" + options.modelFile;
    return false;
  }
  model.setInternalModel(std::move(equations));
  return true;
}

}  // namespace

int runRun(const RunOptions& options, const Console& console) {
  // A sample file carries a directory into which its reader goes: where results go is settled before.
  const std::string output = std::filesystem::absolute(options.output).string();
  RunController controller(console.frontEnd);
  std::string message;
  ModelConfiguration model;
  if (!chooseModel(options, model, message)) return console.fail(message);
  if (!model.outputFile.empty()) model.outputFile = std::filesystem::absolute(model.outputFile).string();

  PrepConfiguration prep;
  if (!loadSampleFile(options.sampleFile, prep, message)) return console.fail(message + "\n" + options.sampleFile);
  controller.project.setPrep(std::move(prep));
  controller.project.setModel(std::move(model));
  if (!controller.runModel(true)) return kFailed;
  controller.project.model.outputFile = options.modelOutput;
  const ProjectConfiguration& project = controller.project;
  if (!savePostProcessorFile(output, project.prep, project.model, project.vels, message)) return console.fail(message);
  console.out << project.model.runCount() << " runs, " << project.model.outputCount() << " outputs: " << options.output
              << '\n';
  return kSucceeded;
}

}  // namespace tarvex
