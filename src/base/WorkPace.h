#pragma once

#include <algorithm>
#include <cstdint>

#include "base/Progress.h"

namespace tarvex {

// Reports the progress of a loop each time so much is done that some milliseconds may have passed.
class WorkPace {
 public:
  // A loop of `steps` steps, each of about `operations` simple ones such as an addition.
  WorkPace(const Progress& progress, std::int64_t steps, std::int64_t operations)
      : progress_(progress),
        steps_(steps),
        stride_(std::max(kOperations / std::max(operations, std::int64_t{1}), std::int64_t{1})) {}

  // Before each step. False: stop.
  [[nodiscard]] bool step() { return ++step_ % stride_ != 0 || progress_.report(step_ - 1, steps_); }

 private:
  static constexpr std::int64_t kOperations = 1000000;  // 1 to 5 ms

  const Progress& progress_;
  std::int64_t steps_;
  std::int64_t stride_;
  std::int64_t step_ = 0;
};

}  // namespace tarvex
