#include "model/ModelRequest.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "base/Paths.h"
#include "model/ModelCommand.h"

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
std::optional<ModelRefusal> checkFiles(const ModelRequest& request) {
  if (!request.execute) {
    const std::string reason = whyNotReadable(request.outputFile);
    if (!reason.empty()) return ModelRefusal{"Error: Wrong output file", "   No output model file" + reason};
  } else if (!request.spreadsheet) {
    const std::string program = programOf(request.executable);
    const std::string reason = whyNotReadable(program);
    if (!reason.empty())
      return ModelRefusal{"Error: No executable file", "   Error checking model executable" + reason};
    if (isSameFile(existingPath(program), request.outputFile))
      return ModelRefusal{"Error: Wrong output file",
                          "   No output model file\n" + request.outputFile + ": this is the program itself"};
  }
  return std::nullopt;
}

std::optional<ModelRefusal> acceptInternal(ModelChoice& choice) {
  if (choice.internalModel() == nullptr) return ModelRefusal{"Error: No model loaded", "   No internal model loaded"};
  if (choice.internalModel()->numOutputs() == 0)
    return ModelRefusal{"Error: Empty model", "   Model produces no result"};
  choice.kind = kInternalModel;
  return std::nullopt;
}

}  // namespace

std::optional<ModelRefusal> acceptModelRequest(const ModelRequest& request, ModelChoice& choice) {
  if (request.internal) return acceptInternal(choice);
  if ((request.execute && request.executable.empty()) || request.outputFile.empty())
    return ModelRefusal{"Error: Empty field", "   Empty fields not admitted"};
  ModelChoice external;
  external.setExternal(request.executable, request.outputFile, request.spreadsheet ? 1 : 0);
  if (!external.problem().empty()) return ModelRefusal{"Error: Path too long", external.problem()};
  if (std::optional<ModelRefusal> refusal = checkFiles(request)) return refusal;
  const bool hasCells = request.execute && request.spreadsheet && !request.cells.empty();
  if (hasCells && !request.cells.problem().empty())
    return ModelRefusal{"Error: Cells of the workbook", request.cells.problem()};
  choice.setExternal(request.executable, request.outputFile, request.spreadsheet ? 1 : 0);
  choice.cells = hasCells ? request.cells : WorkbookCells();
  choice.kind = request.execute ? kExternalExecutable : kNoModelToStart;
  return std::nullopt;
}

}  // namespace tarvex
