#pragma once

#include <optional>
#include <string>

#include "model/ModelConfiguration.h"

namespace tarvex {

// What a user chose as the model, before it is known whether it can be run.
struct ModelChoice {
  bool internal = false;     // the equations that the configuration holds
  bool execute = true;       // the model is started; else only its output file is read
  bool spreadsheet = false;  // the model is a workbook
  std::string executable = {};
  std::string outputFile = {};  // or the workbook
};

// Why a choice is refused.
struct Refusal {
  std::string title;
  std::string text;
};

// Whether the files of an external model are there. With the mode kExternalExecutable the executable must be readable,
// unless a spreadsheet takes its place; the output file needn't exist yet. With kNoModelToStart the output file must be
// readable.
bool checkModelFiles(const std::string& executable, const std::string& outputFile, ModelKind mode, bool spreadsheet);

// Makes `model` what the user chose. A choice that is refused leaves it as it was.
[[nodiscard]] std::optional<Refusal> acceptModelChoice(const ModelChoice& choice, ModelConfiguration& model);

}  // namespace tarvex
