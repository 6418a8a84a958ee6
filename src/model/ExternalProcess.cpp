#include "model/ExternalProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <string_view>

#include "base/Paths.h"
#include "base/ProcessTable.h"
#include "base/SystemCalls.h"

namespace tarvex {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds kGrace{1000};     // from the request to end to the kill
constexpr milliseconds kGroupSlice{10};  // between two looks at a group that is about to end
constexpr int kSignalExit = 128;
constexpr milliseconds kLogSlice{100};  // between two looks at the size of the log

// This process's environment with more variables, in the form that a new process takes. Valid while they are.
std::vector<char*> environmentWith(std::vector<std::string>& variables) {
  std::vector<char*> environment;
  for (std::string& variable : variables) environment.push_back(variable.data());
  for (char** entry = environ; *entry != nullptr; ++entry) {
    const std::string_view text(*entry);
    const std::string_view name = text.substr(0, text.find('=') + 1);
    if (std::ranges::none_of(variables, [name](const std::string& variable) { return variable.starts_with(name); }))
      environment.push_back(*entry);
  }
  environment.push_back(nullptr);
  return environment;
}

// What posix_spawn is told beside the program. The first of its steps that fails is kept.
class SpawnSettings {
 public:
  SpawnSettings() {
    keep(posix_spawn_file_actions_init(&actions_));
    keep(posix_spawnattr_init(&attributes_));
  }
  ~SpawnSettings() {
    posix_spawnattr_destroy(&attributes_);
    posix_spawn_file_actions_destroy(&actions_);
  }
  SpawnSettings(const SpawnSettings&) = delete;
  SpawnSettings& operator=(const SpawnSettings&) = delete;

  // Its own group, and signals as a program finds them at a shell's prompt, whatever this one has done with them.
  void setSignals() {
    sigset_t none;
    sigset_t all;
    sigemptyset(&none);
    sigfillset(&all);
    keep(
        posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK));
    keep(posix_spawnattr_setpgroup(&attributes_, 0));
    keep(posix_spawnattr_setsigdefault(&attributes_, &all));
    keep(posix_spawnattr_setsigmask(&attributes_, &none));
  }

  // Output before input: `log` may itself be descriptor 0 when this program was started without one.
  void setDescriptors(int log, int stream) {
    if (log >= 0)
      keep(posix_spawn_file_actions_adddup2(&actions_, log, STDOUT_FILENO));
    else
      keep(posix_spawn_file_actions_addopen(&actions_, STDOUT_FILENO, "/dev/null", O_WRONLY, 0));
    keep(posix_spawn_file_actions_adddup2(&actions_, STDOUT_FILENO, STDERR_FILENO));
    keep(posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0));
    if (stream >= 0) {
      keep(posix_spawn_file_actions_adddup2(&actions_, stream, STDIN_FILENO));
      keep(posix_spawn_file_actions_adddup2(&actions_, stream, STDOUT_FILENO));
    }
    keep(posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1));
  }

  void setDirectory(const std::string& directory) {
    if (!directory.empty()) keep(posix_spawn_file_actions_addchdir_np(&actions_, directory.c_str()));
  }

  // 0, or the errno of what failed, the start of the program in the child included.
  int spawn(pid_t& pid, std::string executable, std::vector<std::string> arguments,
            std::vector<std::string> variables) {
    std::vector<char*> words = {executable.data()};
    for (std::string& argument : arguments) words.push_back(argument.data());
    words.push_back(nullptr);
    std::vector<char*> environment = environmentWith(variables);
    if (error_ != 0) return error_;
    return posix_spawn(&pid, executable.c_str(), &actions_, &attributes_, words.data(), environment.data());
  }

 private:
  void keep(int result) {
    if (error_ == 0) error_ = result;
  }

  posix_spawn_file_actions_t actions_{};
  posix_spawnattr_t attributes_{};
  int error_ = 0;
};

// Whether any process of the group still runs. Those that ended and that nobody waited for count as members for the
// system, and where the first process of all is slow to wait for orphans, as in a container, they stay long.
bool groupRuns(pid_t group) {
  if (::kill(-group, 0) != 0) return false;
  const std::optional<std::vector<ProcessEntry>> processes = processTable();
  return !processes || std::any_of(processes->begin(), processes->end(), [group](const ProcessEntry& process) {
    return process.group == group && !process.ended;
  });
}

// A program whose own parent ignored the end of its children ignores it too, and then no exit code is to be had.
void watchChildren() {
  struct sigaction action {};
  if (sigaction(SIGCHLD, nullptr, &action) == 0 && action.sa_handler == SIG_IGN) std::signal(SIGCHLD, SIG_DFL);
}

}  // namespace

ExternalProcess::~ExternalProcess() {
  stop();
}

bool ExternalProcess::start(const Start& start) {
  watchChildren();
  static_cast<void>(log_.open(start.logFile));  // one that can't be made costs the log, not the run
  SpawnSettings settings;
  settings.setSignals();
  settings.setDescriptors(log_.descriptor(), start.stream);
  settings.setDirectory(start.directory);
  error_ = settings.spawn(pid_, absolutePath(start.executable), start.arguments, start.variables);
  if (error_ != 0) log_.close();
  if (error_ != 0) return false;
  state_ = State::Running;
  watch_ = static_cast<int>(::syscall(SYS_pidfd_open, pid_, 0));
  return true;
}

bool ExternalProcess::wait(milliseconds time) {
  const auto end = steady_clock::now() + time;
  int found = 0;
  do {
    log_.trim();
    const auto rest = std::chrono::duration_cast<milliseconds>(end - steady_clock::now());
    // Without a watch this is a plain sleep: a negative descriptor is passed over.
    pollfd ended{watch_, POLLIN, 0};
    found = ::poll(&ended, 1, static_cast<int>(std::clamp(rest, milliseconds(0), kLogSlice).count()));
  } while (found == 0 && steady_clock::now() < end);
  return found > 0;
}

ExternalProcess::State ExternalProcess::poll() {
  if (state_ != State::Running) return state_;
  siginfo_t info{};
  int result = 0;
  do {
    result = waitid(P_PID, static_cast<id_t>(pid_), &info, WEXITED | WNOHANG);
  } while (result != 0 && errno == EINTR);
  if (result == 0 && info.si_pid == 0) return state_;
  state_ = result == 0 ? State::Ended : State::Lost;
  exitCode_ = info.si_code == CLD_EXITED ? info.si_status : kSignalExit + info.si_status;
  endWatch();
  log_.close();
  return state_;
}

void ExternalProcess::stop() {
  if (state_ != State::Running) return;
  signalGroup(SIGTERM);
  signalGroup(SIGCONT);  // a process that was suspended sees the request only when it goes on
  if (waitForGroup()) return;
  signalGroup(SIGKILL);
  waitForGroup();
  while (poll() == State::Running) wait(kGroupSlice);
}

void ExternalProcess::signalGroup(int signalNumber) const {
  ::kill(-pid_, signalNumber);
}

// The group keeps its number while any member is left, even after its head is gone and was waited for.
bool ExternalProcess::waitForGroup() {
  const auto end = steady_clock::now() + kGrace;
  while (poll() == State::Running || groupRuns(pid_)) {
    if (steady_clock::now() >= end) return false;
    wait(kGroupSlice);
  }
  return true;
}

void ExternalProcess::endWatch() {
  if (watch_ >= 0) SystemCalls::current().close(watch_);
  watch_ = -1;
}

}  // namespace tarvex
