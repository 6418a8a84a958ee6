#pragma once

#include <optional>
#include <string>

#include "model/ModelChoice.h"

namespace tarvex {

// What a user asks for as the model, before it is known whether it can be run.
struct ModelRequest {
  bool internal = false;     // the equations that the choice holds
  bool execute = true;       // the model is started; else only its output file is read
  bool spreadsheet = false;  // the model is a workbook
  std::string executable = {};
  std::string outputFile = {};  // or the workbook
};

// Why a request is refused.
struct Refusal {
  std::string title;
  std::string text;
};

// Whether the files of an external model are there. With the mode kExternalExecutable the executable must be readable,
// unless a spreadsheet takes its place; the output file needn't exist yet. With kNoModelToStart the output file must be
// readable.
[[nodiscard]] bool checkModelFiles(const std::string& executable, const std::string& outputFile, ModelKind mode,
                                   bool spreadsheet);

// Makes `choice` what the user asks for. A request that is refused leaves it as it was.
[[nodiscard]] std::optional<Refusal> acceptModelRequest(const ModelRequest& request, ModelChoice& choice);

}  // namespace tarvex
