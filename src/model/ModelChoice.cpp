#include "model/ModelChoice.h"

#include <unistd.h>

#include <filesystem>

#include "base/Paths.h"

namespace tarvex {

namespace {

bool isReadableFile(const std::string& path) {
  const std::string existing = existingPath(path);
  std::error_code error;
  return !std::filesystem::is_directory(existing, error) && ::access(existing.c_str(), R_OK) == 0;
}

std::optional<Refusal> acceptInternal(ModelConfiguration& model) {
  if (model.internalModel() == nullptr) return Refusal{"Error: No model loaded", "   No internal model loaded"};
  if (model.internalModel()->numOutputs() == 0) return Refusal{"Error: Empty model", "   Model produces no result"};
  model.kind = kInternalModel;
  return std::nullopt;
}

}  // namespace

bool checkModelFiles(const std::string& executable, const std::string& outputFile, ModelKind mode, bool spreadsheet) {
  if (mode == kNoModelToStart) return isReadableFile(outputFile);
  return spreadsheet || isReadableFile(executable);
}

std::optional<Refusal> acceptModelChoice(const ModelChoice& choice, ModelConfiguration& model) {
  if (choice.internal) return acceptInternal(model);
  if ((choice.execute && choice.executable.empty()) || choice.outputFile.empty())
    return Refusal{"Error: Empty field", "   Empty fields not admitted"};
  const ModelKind kind = choice.execute ? kExternalExecutable : kNoModelToStart;
  if (!checkModelFiles(choice.executable, choice.outputFile, kind, choice.spreadsheet))
    return choice.execute ? Refusal{"Error: No executable file", "   Error checking model executable"}
                          : Refusal{"Error: Wrong output file", "   No output model file"};
  model.setExternal(choice.executable, choice.outputFile, choice.spreadsheet ? 1 : 0);
  model.kind = kind;
  return std::nullopt;
}

}  // namespace tarvex
