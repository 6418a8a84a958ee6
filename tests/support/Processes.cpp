#include "support/Processes.h"

#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

namespace tarvex::test {

int openDescriptors() {
  const std::filesystem::directory_iterator entries("/proc/self/fd");
  return static_cast<int>(std::distance(begin(entries), end(entries)));
}

bool hasChildren() {
  return waitid(P_ALL, 0, nullptr, WEXITED | WNOHANG | WNOWAIT) == 0;
}

std::vector<int> livingProcesses(const std::string& pidFile) {
  std::vector<int> living;
  std::ifstream in(pidFile);
  for (int pid = 0; in >> pid;) {
    std::ifstream status("/proc/" + std::to_string(pid) + "/stat");
    std::string line;
    if (std::getline(status, line) && line.find(") Z ") == std::string::npos) living.push_back(pid);
  }
  return living;
}

std::vector<int> processesOf(const std::string& program, const std::string& argument) {
  std::vector<int> found;
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    std::ifstream in(entry.path() / "cmdline");
    std::string name;
    std::string arguments;
    std::getline(in, name, '\0');
    std::getline(in, arguments);
    if (name.ends_with(program) && arguments.find(argument) != std::string::npos)
      found.push_back(std::stoi(entry.path().filename()));
  }
  return found;
}

bool waitForLines(const std::string& path, std::size_t lines) {
  constexpr std::chrono::milliseconds kSlice{5};
  for (int i = 0; i < 1000; ++i) {
    std::ifstream in(path);
    if (static_cast<std::size_t>(std::count(std::istreambuf_iterator<char>(in), {}, '\n')) >= lines) return true;
    std::this_thread::sleep_for(kSlice);
  }
  return false;
}

}  // namespace tarvex::test
