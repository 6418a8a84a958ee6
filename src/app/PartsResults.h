#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/Progress.h"

namespace tarvex {

class RunFollower;

// An output over the runs of those parts that are done. With a time axis a run's value is its largest.
struct OutputSoFar {
  std::string name;
  std::int32_t runs = 0;  // whose value is a number
  double mean = 0.0;
  double deviation = 0.0;  // as in the tables of the analysis; nan without any number, as are the others
  double minimum = 0.0;
  double maximum = 0.0;
};

// Reads what the parts that are done gave. Nothing of it is kept anywhere: it is no result of the study. False, with
// file and reason, and after a stop.
[[nodiscard]] bool readSoFar(const RunFollower& run, std::vector<OutputSoFar>& outputs, std::int32_t& runs,
                             std::string& message, const Progress& progress);

}  // namespace tarvex
