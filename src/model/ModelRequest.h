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
  WorkbookCells cells = {};     // of a workbook that is started; none: it has a row a run
};

// Why a request is refused: of a file its path and the reason stand on the second line.
struct ModelRefusal {
  std::string title;
  std::string text;
};

// Makes `choice` what the user asks for. A request that is refused leaves it as it was.
[[nodiscard]] std::optional<ModelRefusal> acceptModelRequest(const ModelRequest& request, ModelChoice& choice);

}  // namespace tarvex
