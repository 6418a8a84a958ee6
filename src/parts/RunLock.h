#pragma once

#include <string>

namespace tarvex {

// Held by the one program that drives a run. The system gives it back whatever becomes of its holder.
class RunLock {
 public:
  RunLock() = default;
  ~RunLock();
  RunLock(const RunLock&) = delete;
  RunLock& operator=(const RunLock&) = delete;

  // Takes the lock and writes host and pid into its file. False, with who holds it, or with path and reason.
  [[nodiscard]] bool take(const std::string& path, std::string& message);

 private:
  int fd_ = -1;
};

// Host and process that hold the lock: "host n1, process 4711". Empty: nobody.
std::string lockHolder(const std::string& path);

}  // namespace tarvex
