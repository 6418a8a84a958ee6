#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace tarvex {

// What a program said, both its streams together, and its exit code; 128 and the signal for one that was ended.
struct CommandOutput {
  bool started = false;
  int code = 0;
  std::string text;  // without line ends behind it
};

// Runs a program that is looked for along PATH and waits for its end, at most so long: then it is killed. `goOn` is
// asked meanwhile, and false kills it too. False when it couldn't be started, or was killed; text then says why.
[[nodiscard]] bool runCommand(const std::vector<std::string>& words, std::chrono::milliseconds most,
                              const std::function<bool()>& goOn, CommandOutput& output);

}  // namespace tarvex
