#pragma once

#include <string>

namespace tarvex {

class ModelResults;

// Writes results without a time axis as a model would: ModelOutputReader gets the same names and, bit for bit, the same
// numbers out of the file. False, with path and reason; the file is then what it was.
[[nodiscard]] bool writeModelOutput(const std::string& path, const ModelResults& results, std::string& message);

}  // namespace tarvex
