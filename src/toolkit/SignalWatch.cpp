#include "toolkit/SignalWatch.h"

#include <fcntl.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <array>
#include <csignal>

namespace tarvex {
namespace {

constexpr std::array<int, 3> kWatched = {SIGTERM, SIGINT, SIGHUP};

std::array<int, 2> ends = {-1, -1};  // of the pipe through which a handler, which may do next to nothing, reports

void report(int signal) {
  const auto number = static_cast<unsigned char>(signal);
  // A full pipe holds signals enough.
  static_cast<void>(!::write(ends[1], &number, 1));
}

}  // namespace

class SignalWatch::Notifier : public QSocketNotifier {
 public:
  Notifier() : QSocketNotifier(ends[0], QSocketNotifier::Read) {}
};

SignalWatch::SignalWatch(std::function<void(int)> run) : notifier_(nullptr) {
  if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) return;  // then signals keep their usual effect
  notifier_ = new Notifier;
  QObject::connect(notifier_, &QSocketNotifier::activated, notifier_, [run = std::move(run)] {
    unsigned char number = 0;
    if (::read(ends[0], &number, 1) == 1) run(number);
  });
  for (const int signal : kWatched) std::signal(signal, report);
}

SignalWatch::~SignalWatch() {
  if (notifier_ == nullptr) return;
  for (const int signal : kWatched) std::signal(signal, SIG_DFL);
  delete notifier_;
  for (int& end : ends) {
    ::close(end);
    end = -1;
  }
}

}  // namespace tarvex
