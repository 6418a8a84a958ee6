#include "batch/StopSignals.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <system_error>
#include <thread>
#include <vector>

#include "base/ProcessTable.h"
#include "base/Temporaries.h"
#include "batch/Commands.h"

namespace tarvex {

namespace {

constexpr int kGrace = 1250;  // milliseconds; with the cleaning up less than two seconds on a busy machine, too

int requestPipe[2] = {-1, -1};

extern "C" void onStopSignal(int) {
  const int error = errno;
  Temporaries::cancel(true);
  // A full pipe holds requests enough.
  static_cast<void>(::write(requestPipe[1], "", 1) == 1);
  errno = error;
}

// Each child is the head of a group of its own, and what it started may have made others.
void killChildren() {
  const std::vector<ProcessEntry> processes = processTable().value_or(std::vector<ProcessEntry>());
  std::vector<pid_t> family = {::getpid()};
  for (std::size_t i = 0; i < family.size(); ++i)
    for (const ProcessEntry& process : processes)
      if (process.parent == family[i] && process.number != ::getpid()) family.push_back(process.number);
  for (std::size_t i = 1; i < family.size(); ++i) {
    ::kill(-family[i], SIGKILL);
    ::kill(family[i], SIGKILL);
  }
}

// A thread of its own: the one that works may be anywhere, within a library's long call or waiting for a disk.
void endAfterRequest() {
  char byte = 0;
  while (::read(requestPipe[0], &byte, 1) != 1) {
  }
  pollfd second{requestPipe[0], POLLIN, 0};
  ::poll(&second, 1, kGrace);
  killChildren();
  Temporaries::deleteAllForEnd();
  ::_exit(kStopped);
}

// Signals go to the thread that works: they end its waiting.
bool startThread() {
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &before);
  bool started = true;
  try {
    std::thread(endAfterRequest).detach();
  } catch (const std::system_error&) {
    started = false;
  }
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  return started;
}

}  // namespace

void StopSignals::install() {
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  if (::pipe2(requestPipe, O_CLOEXEC) != 0) return;  // without the means signals end the process as ever
  ::fcntl(requestPipe[1], F_SETFL, O_NONBLOCK);
  if (!startThread()) return;
  std::signal(SIGINT, onStopSignal);
  std::signal(SIGTERM, onStopSignal);
  // A program started by nohup stays deaf to this one.
  if (std::signal(SIGHUP, onStopSignal) == SIG_IGN) std::signal(SIGHUP, SIG_IGN);
}

bool StopSignals::requested() {
  return Temporaries::cancelled();
}

void StopSignals::request(bool stop) {
  Temporaries::cancel(stop);
}

}  // namespace tarvex
