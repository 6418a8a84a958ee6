#pragma once

#include <string>

#include "base/Progress.h"

namespace tarvex {

class FactorList;

// A whole .fac file. On failure `list`, or the old file, stays as it was; the message is the system's and, on its
// second line, says where and what. A message on success is a warning: factors that the file, of six digits, doesn't
// keep.
[[nodiscard]] bool loadFactorFile(const std::string& path, FactorList& list, std::string& message,
                                  const Progress& progress = {});
[[nodiscard]] bool saveFactorFile(const std::string& path, const FactorList& list, std::string& message,
                                  const Progress& progress = {});

}  // namespace tarvex
