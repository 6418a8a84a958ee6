#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarvex {

// What the command line says of a run in parts. Only what was given is set.
struct PartsOptions {
  std::optional<std::int64_t> parts;
  std::optional<std::int64_t> jobs;
  std::optional<std::string> engine;
  std::string directory;
  std::optional<std::string> onFailure;
  std::optional<std::int64_t> timeLimit;  // seconds
  std::optional<std::int64_t> memory;     // megabytes
  std::vector<std::string> links;
  std::string prologue;  // a file
  std::vector<std::string> engineOptions;
  bool detach = false;

  // Whether the run is one in parts at all.
  bool any() const {
    return parts || jobs || engine || !directory.empty() || onFailure || timeLimit || memory || !links.empty() ||
           !prologue.empty() || !engineOptions.empty() || detach;
  }
};

struct ResumeOptions {
  std::string directory;
  std::vector<std::int32_t> only;  // of the parts that failed; empty: all of them
  PartsOptions parts;              // in place of what the run was started with
};

// A part whose model is a workbook, as the script of the run has it computed.
struct WorkbookPartOptions {
  std::string sampleFile;
  std::string output;  // a file as a model writes it
  std::string workbook;
  std::string cells;  // as WorkbookCells::text() has them; empty: by its sheets
};

struct StatusOptions {
  std::string directory;
};

struct CancelOptions {
  std::string directory;
};

// The commands on a run in parts, while their words are read.
struct PartsCommands {
  WorkbookPartOptions workbookPart;
  ResumeOptions resume;
  StatusOptions status;
  CancelOptions cancel;
};

}  // namespace tarvex
