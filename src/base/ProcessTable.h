#pragma once

#include <sys/types.h>

#include <optional>
#include <vector>

namespace tarvex {

// What the system tells of a process.
struct ProcessEntry {
  pid_t number = 0;
  pid_t parent = 0;
  pid_t group = 0;
  bool ended = false;  // and nobody has waited for it yet
};

// All processes that there are now; nothing where the system doesn't tell. One that ends meanwhile is left out.
std::optional<std::vector<ProcessEntry>> processTable();

}  // namespace tarvex
