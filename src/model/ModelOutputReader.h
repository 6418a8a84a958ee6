#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/Progress.h"
#include "model/OutputNames.h"

namespace tarvex {

class ModelResults;
class TextReader;

// Reads what an external model wrote. A number ends at white space or at the end of the file; anything else behind it
// makes it no number, so that "1,37" is refused and not read as 1. Exponents may be marked by D, as Fortran writes
// them.
class ModelOutputReader {
 public:
  ModelOutputReader(ModelResults& results, Warn warn);

  // Reads a whole file, whose run 0 becomes run `firstRun` of the results: 0 replaces what was there, a later one adds
  // to it, so that the files of a sample's parts are joined by being read in their order. The runs of a gap are
  // missing, nan at the times of the run behind it. Files that are joined must name the same outputs and agree on
  // having a time axis. False, with errorText(), for a file that can't be read, and after a stop; the results are then
  // as before, or empty where they were to be replaced. Requires: firstRun not below the runs that are there, or 0.
  [[nodiscard]] bool read(const std::string& path, std::int32_t firstRun = 0, const Progress& progress = {});

  // "model.out:12: expected a number, found '1,37' (run 3, output z)"; runs count from 0 in their file.
  const std::string& errorText() const { return errorText_; }

 private:
  [[nodiscard]] bool readFile(TextReader& in, std::int32_t firstRun);
  [[nodiscard]] bool readNames(TextReader& in);
  [[nodiscard]] bool takeTimeMode(TextReader& in);
  [[nodiscard]] bool takeRunCount(TextReader& in, std::int32_t& runs);
  [[nodiscard]] bool readRun(TextReader& in, std::int32_t run);
  [[nodiscard]] bool readRow(TextReader& in);
  [[nodiscard]] bool store(std::int32_t gap);

  ModelResults& results_;
  Warn warn_;
  bool joins_ = false;     // the file adds to the results
  bool hasTimes_ = false;  // the file has a time axis
  std::vector<std::string> names_;
  std::vector<std::string> given_;  // by the file, where one was changed
  std::vector<double> times_;       // scratch: of one run
  std::vector<double> values_;      // and its values
  std::string place_;               // in the file, of the value being read
  std::string errorText_;
};

}  // namespace tarvex
