#pragma once

#include <string>
#include <vector>

#include "base/Progress.h"
#include "model/OutputNames.h"
#include "parts/Part.h"

namespace tarvex {

class ModelResults;

// The output files of the parts of a run. All must name the same outputs and have a time axis or none.
class PartOutput {
 public:
  // Whether the file is the answer to a part: it reads whole and has the part's runs and the outputs of the parts that
  // were looked at before. False, with file and reason.
  [[nodiscard]] bool check(const std::string& path, const Part& part, std::string& message);

 private:
  std::vector<std::string> names_;  // of the first
  bool hasTimes_ = false;
};

// Joins the outputs of all parts, in their order. A part without a path is missing: its runs are nan, at the times of a
// neighbour. False, with file and reason, and `failed` as the part at fault; the results are empty then. False with
// `failed` beyond the last when every part is missing, or after a stop.
[[nodiscard]] bool joinParts(const std::vector<Part>& parts, const std::vector<std::string>& paths, const Warn& warn,
                             ModelResults& results, std::size_t& failed, std::string& message,
                             const Progress& progress = {});

}  // namespace tarvex
