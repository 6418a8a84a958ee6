#include "model/ModelRequest.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "base/Paths.h"

namespace tarvex {

namespace {

// Path and reason, on a line of their own; empty when the file can be read.
std::string whyNotReadable(const std::string& path) {
  const std::string existing = existingPath(path);
  std::error_code error;
  int reason = ::access(existing.c_str(), R_OK) == 0 ? 0 : errno;
  if (std::filesystem::is_directory(existing, error)) reason = EISDIR;
  return reason == 0 ? "" : '\n' + path + ": " + std::strerror(reason);
}

// An executable's output file needn't exist yet.
std::optional<Refusal> checkFiles(const ModelRequest& request) {
  if (!request.execute) {
    const std::string reason = whyNotReadable(request.outputFile);
    if (!reason.empty()) return Refusal{"Error: Wrong output file", "   No output model file" + reason};
  } else if (!request.spreadsheet) {
    const std::string reason = whyNotReadable(request.executable);
    if (!reason.empty()) return Refusal{"Error: No executable file", "   Error checking model executable" + reason};
  }
  return std::nullopt;
}

std::optional<Refusal> acceptInternal(ModelChoice& choice) {
  if (choice.internalModel() == nullptr) return Refusal{"Error: No model loaded", "   No internal model loaded"};
  if (choice.internalModel()->numOutputs() == 0) return Refusal{"Error: Empty model", "   Model produces no result"};
  choice.kind = kInternalModel;
  return std::nullopt;
}

}  // namespace

std::optional<Refusal> acceptModelRequest(const ModelRequest& request, ModelChoice& choice) {
  if (request.internal) return acceptInternal(choice);
  if ((request.execute && request.executable.empty()) || request.outputFile.empty())
    return Refusal{"Error: Empty field", "   Empty fields not admitted"};
  ModelChoice external;
  external.setExternal(request.executable, request.outputFile, request.spreadsheet ? 1 : 0);
  if (!external.problem().empty()) return Refusal{"Error: Path too long", external.problem()};
  if (std::optional<Refusal> refusal = checkFiles(request)) return refusal;
  choice.setExternal(request.executable, request.outputFile, request.spreadsheet ? 1 : 0);
  choice.kind = request.execute ? kExternalExecutable : kNoModelToStart;
  return std::nullopt;
}

}  // namespace tarvex
