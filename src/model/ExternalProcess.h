#pragma once

#include <sys/types.h>

#include <chrono>
#include <string>
#include <vector>

#include "model/ModelLog.h"

namespace tarvex {

// A model that runs beside the program, as a process of its own at the head of its own process group: no signal of the
// terminal reaches it, and a stop reaches everything that it started. Without a stream it reads nothing from its
// standard input.
class ExternalProcess {
 public:
  enum class State { NotStarted, Running, Ended, Lost };

  struct Start {
    std::string executable;
    std::vector<std::string> arguments;  // as the program gets them
    std::string directory;               // in which it runs; empty: the current one
    std::string logFile;  // gets standard output and error; a file that can't be made costs the log, not the run
    int stream = -1;      // 3 or more: a descriptor that becomes standard input and output
    std::vector<std::string> variables = {};  // "NAME=value", besides those of this process's environment
  };

  ExternalProcess() = default;
  ~ExternalProcess();  // stops what still runs
  ExternalProcess(const ExternalProcess&) = delete;
  ExternalProcess& operator=(const ExternalProcess&) = delete;

  // Starts the executable. On false it doesn't run, and error() is the errno that tells why: no such file, no
  // permission, a file that is no program.
  // Requires: nothing running. Relative paths are meant from the current directory.
  [[nodiscard]] bool start(const Start& start);
  int error() const { return error_; }
  // The log that was made; empty: none. Its name differs from logFile where that is somebody else's file.
  const std::string& logPath() const { return log_.path(); }

  // Sleeps for the time given, or until the process ends or a signal comes. True when the process is known to have
  // ended.
  bool wait(std::chrono::milliseconds time);

  // Looks, without waiting, whether the process has ended. Lost: the system knows no such child any more.
  State poll();
  // What the process returned; of one that a signal ended 128 and the signal's number, as a shell has it.
  // Requires: poll() gave Ended.
  int exitCode() const { return exitCode_; }
  // Of the process and of its group, once it was started.
  pid_t number() const { return pid_; }
  // A descriptor that is readable when the process has ended; -1: there is none.
  int watch() const { return watch_; }

  // Asks the whole group to end, and kills after a second what is still there. Nothing of it is left on return.
  void stop();

 private:
  void signalGroup(int signalNumber) const;
  bool waitForGroup();
  void endWatch();

  ModelLog log_;
  State state_ = State::NotStarted;
  pid_t pid_ = -1;
  int watch_ = -1;  // readable when the process has ended; -1 on a system without such descriptors
  int error_ = 0;
  int exitCode_ = 0;
};

}  // namespace tarvex
