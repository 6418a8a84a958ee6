#include "base/Cores.h"

#include <algorithm>
#include <atomic>
#include <csignal>
#include <exception>
#include <system_error>
#include <thread>
#include <vector>

namespace tarvex {
namespace {

std::atomic<std::size_t> threads = 0;  // 0: all

// Signals are the calling thread's: the threads started meanwhile get none.
class SignalsHeld {
 public:
  SignalsHeld() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before_);
  }
  ~SignalsHeld() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
  SignalsHeld(const SignalsHeld&) = delete;
  SignalsHeld& operator=(const SignalsHeld&) = delete;

 private:
  sigset_t before_{};
};

}  // namespace

std::size_t Cores::count() {
  static const std::size_t all = std::max(std::thread::hardware_concurrency(), 1U);
  const std::size_t asked = threads;
  return asked != 0 ? asked : all;
}

void Cores::use(std::size_t count) {
  threads = count;
}

std::size_t partsOf(std::size_t items, std::size_t least) {
  return std::clamp<std::size_t>(items / std::max<std::size_t>(least, 1), 1, Cores::count());
}

void inParts(std::size_t items, std::size_t least,
             const std::function<void(std::size_t part, std::size_t first, std::size_t last)>& work) {
  const std::size_t parts = partsOf(items, least);
  if (parts == 1) return work(0, 0, items);
  std::vector<std::exception_ptr> thrown(parts);
  const auto run = [&](std::size_t part) noexcept {
    try {
      work(part, items * part / parts, items * (part + 1) / parts);
    } catch (...) {
      thrown[part] = std::current_exception();
    }
  };
  std::vector<std::thread> others;
  others.reserve(parts);
  std::size_t started = 1;
  {
    const SignalsHeld held;
    try {
      for (; started < parts; ++started) others.emplace_back(run, started);
    } catch (const std::system_error&) {
      // No more threads are to be had: the rest is done here.
    }
  }
  run(0);
  for (std::size_t part = started; part < parts; ++part) run(part);
  for (std::thread& other : others) other.join();
  for (const std::exception_ptr& exception : thrown)
    if (exception) std::rethrow_exception(exception);
}

}  // namespace tarvex
