#pragma once

#include <string>
#include <vector>

#include "parts/Part.h"
#include "parts/PartSettings.h"

namespace tarvex {

// What a run in parts is, kept as run.json of its directory: everything that a later start of it needs. Paths are as
// they were typed, from `directory` on.
struct RunRecord {
  std::string id;         // tells the run from others on a cluster
  std::string directory;  // in which the run was asked for
  std::string sampleFile;
  std::string sampleChecksum;
  std::string executable;
  std::string programChecksum;
  std::string outputFile;  // of the model
  std::string resultFile;
  bool keeps = true;  // the directory stays when the result is there
  std::vector<Part> parts;
  PartSettings settings;
  // The model, where it is one, whose checksum then is the program's; the executable is what computes a part of it.
  std::string workbook = {};
  std::string cells = {};  // by which it is driven, as WorkbookCells::text() has them

  std::int32_t rows() const { return parts.empty() ? 0 : parts.back().first + parts.back().rows; }

  // False, with the path and the reason.
  [[nodiscard]] bool save(const std::string& path, std::string& message) const;
  [[nodiscard]] bool load(const std::string& path, std::string& message);
};

// A random number of eight hexadecimal digits, from the system.
std::string newRunId();

}  // namespace tarvex
