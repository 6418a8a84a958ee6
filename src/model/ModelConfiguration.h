#pragma once

#include <string>

#include "base/Progress.h"
#include "model/ModelChoice.h"
#include "model/ModelResults.h"
#include "model/OutputNames.h"

namespace tarvex {

class TextReader;
class TextWriter;

// The project's part that says what is run and what came out of it.
class ModelConfiguration {
 public:
  ModelChoice choice;
  ModelResults results;

  // Choice and results. On false the system gave no room for the results, as the message says, and this is as it was.
  [[nodiscard]] bool copyFrom(const ModelConfiguration& other, std::string& message);

  // Reads the output file of the choice into the results; the internal model goes, `kind` stays. False, with
  // `message`, for a file that can't be read, and after a stop; there are no results then.
  [[nodiscard]] bool readModelOutput(const Warn& warn, std::string& message, const Progress& progress = {});

  // The Model record. read() works on this object: read into a temporary. It also sets the remembered directories of
  // the model.
  void write(TextWriter& out) const;
  [[nodiscard]] bool read(TextReader& in);
  // After read(): a line for each output whose name was changed to keep it apart from another; mostly empty.
  std::string warningText;

 private:
  [[nodiscard]] bool readChoice(TextReader& in);
  [[nodiscard]] bool readCells(TextReader& in);
  [[nodiscard]] bool readNames(TextReader& in, std::int32_t count);
  [[nodiscard]] bool readRuns(TextReader& in, std::int32_t count);
};

// About how many bytes the record of `model` takes in a file, for the progress of writing it.
std::uint64_t recordBytes(const ModelConfiguration& model);

}  // namespace tarvex
