#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <vector>

namespace tarvex {

class RunDirectory;

// What the job script says of an attempt: a small file that appears whole under its name. Marks are the truth about a
// part, whatever an engine says.
struct PartMark {
  std::int32_t part = 0;
  std::int32_t attempt = 0;
  bool ended = false;  // else it only says that the attempt has begun
  // Of one that ended.
  std::int32_t code = 0;
  std::string reason = {};  // "ended", "limit", "stopped", "directory"
  // Where it runs or ran.
  std::string host = {};
  pid_t pid = 0;
  std::string born = {};  // tick of the start of the script
  std::string boot = {};
  double written = 0.0;  // seconds of the file's clock
};

// What users ask of a run, whoever drives it and wherever: that it stops, and that parts are done once more which
// failed or are missing.
struct RunWishes {
  bool stop = false;
  std::vector<std::int32_t> again;
};

// Which marks there are, as their names tell, and what is wished. A name is only ever asked for once it was
// listed: a shared file system may remember for half a minute that a file was not there.
[[nodiscard]] bool listMarks(const RunDirectory& run, std::vector<PartMark>& marks, RunWishes& wishes,
                             std::string& message);

// Reads the rest of a mark. False when it isn't there, or not whole.
[[nodiscard]] bool readMark(const RunDirectory& run, PartMark& mark);

}  // namespace tarvex
