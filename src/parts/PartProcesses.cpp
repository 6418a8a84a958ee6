#include "parts/PartProcesses.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string_view>
#include <thread>

#include "base/ProcessTable.h"

namespace tarvex {

namespace {

constexpr std::string_view kVariable = "TARVEX_PART=";

bool takeNumber(std::string_view text, std::int32_t& number) {
  const auto parsed = std::from_chars(text.data(), text.data() + text.size(), number);
  return parsed.ec == std::errc() && parsed.ptr == text.data() + text.size();
}

// RUN:PART:ATTEMPT; colons in RUN do no harm.
bool readVariable(std::string_view value, std::string_view run, PartProcess& process) {
  if (!value.starts_with(run) || value.size() <= run.size() || value[run.size()] != ':') return false;
  const std::string_view rest = value.substr(run.size() + 1);
  const std::size_t colon = rest.find(':');
  return colon != std::string_view::npos && takeNumber(rest.substr(0, colon), process.part) &&
         takeNumber(rest.substr(colon + 1), process.attempt);
}

bool belongs(pid_t number, std::string_view run, PartProcess& process) {
  std::ifstream in("/proc/" + std::to_string(number) + "/environ", std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find('\0', at), text.size());
    const std::string_view entry = std::string_view(text).substr(at, end - at);
    if (entry.starts_with(kVariable) && readVariable(entry.substr(kVariable.size()), run, process)) return true;
    at = end + 1;
  }
  return false;
}

// Those that start others while they are looked for are found in the next round, and so are those that take a moment to
// go: none is left at the end.
template <class Wanted>
void killWhere(const std::string& run, Wanted wanted) {
  constexpr int kMostRounds = 50;
  constexpr std::chrono::milliseconds kPause{2};
  bool found = true;
  for (int round = 0; found && round < kMostRounds; ++round) {
    if (round > 0) std::this_thread::sleep_for(kPause);
    found = false;
    for (const PartProcess& process : partProcesses(run))
      if (wanted(process)) found = ::kill(process.number, SIGKILL) == 0 || found;
  }
}

std::string firstLineOf(const char* path) {
  std::ifstream in(path);
  std::string line;
  std::getline(in, line);
  return line;
}

}  // namespace

std::vector<PartProcess> partProcesses(const std::string& run) {
  std::vector<PartProcess> found;
  const std::optional<std::vector<ProcessEntry>> table = processTable();
  if (!table) return found;
  for (const ProcessEntry& entry : *table) {
    PartProcess process{entry.number, 0, 0};
    if (!entry.ended && belongs(entry.number, run, process)) found.push_back(process);
  }
  return found;
}

void killPartProcesses(const std::string& run) {
  killWhere(run, [](const PartProcess&) { return true; });
}

void killPartProcesses(const std::string& run, std::int32_t part, std::int32_t attempt) {
  killWhere(run, [=](const PartProcess& process) { return process.part == part && process.attempt == attempt; });
}

std::string partVariable(const std::string& run, std::int32_t part, std::int32_t attempt) {
  return run + ':' + std::to_string(part) + ':' + std::to_string(attempt);
}

std::string hostName() {
  std::array<char, 256> name{};
  return ::gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "unknown";
}

std::string bootId() {
  return firstLineOf("/proc/sys/kernel/random/boot_id");
}

bool isProcess(pid_t number, const std::string& born) {
  constexpr int kStartField = 20;  // behind the name: state is the first
  const std::string line = firstLineOf(("/proc/" + std::to_string(number) + "/stat").c_str());
  std::istringstream fields(line.substr(line.rfind(')') + 1));
  std::string field;
  for (int i = 0; i < kStartField; ++i) {
    fields >> field;
    if (i == 0 && field == "Z") return false;
  }
  return !fields.fail() && field == born;
}

}  // namespace tarvex
