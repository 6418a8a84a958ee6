#include "base/ProcessTable.h"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <system_error>

namespace tarvex {
namespace {

// From its line in /proc: number (name) state parent group ...; the name may hold anything.
bool readEntry(const std::filesystem::path& directory, ProcessEntry& entry) {
  std::ifstream in(directory / "stat");
  std::string line;
  std::getline(in, line);
  std::istringstream number(line);
  std::istringstream fields(line.substr(line.rfind(')') + 1));
  char state = 'Z';
  number >> entry.number;
  fields >> state >> entry.parent >> entry.group;
  entry.ended = state == 'Z';
  return !number.fail() && !fields.fail();
}

}  // namespace

std::optional<std::vector<ProcessEntry>> processTable() {
  std::vector<ProcessEntry> processes;
  std::error_code error;
  std::filesystem::directory_iterator entry("/proc", error);
  if (error) return std::nullopt;
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    const char first = entry->path().filename().native().front();
    ProcessEntry process;
    if (first >= '1' && first <= '9' && readEntry(entry->path(), process)) processes.push_back(process);
  }
  return processes;
}

}  // namespace tarvex
