#pragma once

#include <functional>

namespace tarvex {

// Calls `run` from the event loop after the system has asked the process to end (SIGTERM, SIGINT, SIGHUP), with the
// signal's number. One at a time; the signals have their usual effect again afterwards.
class SignalWatch {
 public:
  explicit SignalWatch(std::function<void(int)> run);
  ~SignalWatch();
  SignalWatch(const SignalWatch&) = delete;
  SignalWatch& operator=(const SignalWatch&) = delete;

 private:
  class Notifier;
  Notifier* notifier_;
};

}  // namespace tarvex
