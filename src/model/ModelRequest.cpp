#include "model/ModelRequest.h"

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

std::optional<Refusal> acceptInternal(ModelChoice& choice) {
  if (choice.internalModel() == nullptr) return Refusal{"Error: No model loaded", "   No internal model loaded"};
  if (choice.internalModel()->numOutputs() == 0) return Refusal{"Error: Empty model", "   Model produces no result"};
  choice.kind = kInternalModel;
  return std::nullopt;
}

}  // namespace

bool checkModelFiles(const std::string& executable, const std::string& outputFile, ModelKind mode, bool spreadsheet) {
  if (mode == kNoModelToStart) return isReadableFile(outputFile);
  return spreadsheet || isReadableFile(executable);
}

std::optional<Refusal> acceptModelRequest(const ModelRequest& request, ModelChoice& choice) {
  if (request.internal) return acceptInternal(choice);
  if ((request.execute && request.executable.empty()) || request.outputFile.empty())
    return Refusal{"Error: Empty field", "   Empty fields not admitted"};
  ModelChoice external;
  external.setExternal(request.executable, request.outputFile, request.spreadsheet ? 1 : 0);
  if (!external.problem().empty()) return Refusal{"Error: Path too long", external.problem()};
  const ModelKind kind = request.execute ? kExternalExecutable : kNoModelToStart;
  if (!checkModelFiles(request.executable, request.outputFile, kind, request.spreadsheet))
    return request.execute ? Refusal{"Error: No executable file", "   Error checking model executable"}
                           : Refusal{"Error: Wrong output file", "   No output model file"};
  choice.setExternal(request.executable, request.outputFile, request.spreadsheet ? 1 : 0);
  choice.kind = kind;
  return std::nullopt;
}

}  // namespace tarvex
