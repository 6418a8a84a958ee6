#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <vector>

namespace tarvex {

// A process of this machine that belongs to an attempt at a part, as TARVEX_PART in its environment says.
struct PartProcess {
  pid_t number = 0;
  std::int32_t part = 0;
  std::int32_t attempt = 0;
};

// All those of the run in this directory that this user may see, zombies left out.
std::vector<PartProcess> partProcesses(const std::string& run);
// Kills them all, whatever group or session they are in; those that start meanwhile too.
void killPartProcesses(const std::string& run);
void killPartProcesses(const std::string& run, std::int32_t part, std::int32_t attempt);  // those of one attempt

// TARVEX_PART's value.
std::string partVariable(const std::string& run, std::int32_t part, std::int32_t attempt);

std::string hostName();
std::string bootId();  // of the system as it runs now; empty where it doesn't tell
// Whether the process still is the one that started at that tick of this boot.
bool isProcess(pid_t number, const std::string& born);

}  // namespace tarvex
