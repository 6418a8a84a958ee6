#include "parts/CommandOutput.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>

namespace tarvex {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr int kCommandSlice = 50;  // milliseconds between two questions whether to go on
constexpr int kBySignal = 128;

// 0 or an errno. The program gets nothing to read, and `stream` for all that it says.
int spawnCommand(const std::vector<std::string>& words, int stream, pid_t& pid) {
  std::vector<std::string> copies = words;
  std::vector<char*> arguments;
  for (std::string& word : copies) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t actions{};
  posix_spawnattr_t attributes{};
  int error = posix_spawn_file_actions_init(&actions);
  if (error != 0) return error;
  error = posix_spawnattr_init(&attributes);
  if (error == 0) {
    sigset_t all;
    sigfillset(&all);
    // A group of its own: Ctrl-C is for this program, which then ends that one.
    error = posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGDEF);
    if (error == 0) error = posix_spawnattr_setsigdefault(&attributes, &all);
    if (error == 0) error = posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    if (error == 0) error = posix_spawn_file_actions_adddup2(&actions, stream, STDOUT_FILENO);
    if (error == 0) error = posix_spawn_file_actions_adddup2(&actions, stream, STDERR_FILENO);
    if (error == 0) error = posix_spawnp(&pid, arguments.front(), &actions, &attributes, arguments.data(), environ);
    posix_spawnattr_destroy(&attributes);
  }
  posix_spawn_file_actions_destroy(&actions);
  return error;
}

// Until the end of the stream, which the program's end is; false when it took too long.
bool readStream(int stream, milliseconds most, const std::function<bool()>& goOn, std::string& text) {
  const auto end = steady_clock::now() + most;
  std::array<char, 4096> block{};
  while (steady_clock::now() < end && goOn()) {
    pollfd ready{stream, POLLIN, 0};
    if (::poll(&ready, 1, kCommandSlice) <= 0) continue;
    const ssize_t got = ::read(stream, block.data(), block.size());
    if (got == 0) return true;
    if (got < 0 && errno != EINTR) return false;
    if (got > 0) text.append(block.data(), static_cast<std::size_t>(got));
  }
  return false;
}

}  // namespace

bool runCommand(const std::vector<std::string>& words, milliseconds most, const std::function<bool()>& goOn,
                CommandOutput& output) {
  output = {};
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
    output.text = std::strerror(errno);
    return false;
  }
  pid_t pid = -1;
  const int error = spawnCommand(words, ends[1], pid);
  ::close(ends[1]);
  bool ended = false;
  output.started = error == 0;
  if (output.started) {
    ended = readStream(ends[0], most, goOn, output.text);
    if (!ended) ::kill(-pid, SIGKILL);
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    output.code = WIFEXITED(status) ? WEXITSTATUS(status) : kBySignal + WTERMSIG(status);
  }
  ::close(ends[0]);
  while (!output.text.empty() && output.text.back() == '\n') output.text.pop_back();
  if (error != 0) output.text = words.front() + ": " + std::strerror(error);
  if (error == 0 && !ended) output.text = words.front() + " doesn't answer";
  return ended;
}

}  // namespace tarvex
