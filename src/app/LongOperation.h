#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "base/Progress.h"

namespace tarvex {

class FrontEnd;

// Serves the user while an operation goes on that may be long: events, the stop, and a display of progress once it has
// taken long enough for one to be wanted. The display goes away with the object.
class LongOperation {
 public:
  // `rows`: the runs that it is about, for the display.
  LongOperation(FrontEnd& frontEnd, std::string title, std::int32_t rows);
  // Under a display that is open already.
  explicit LongOperation(FrontEnd& frontEnd);
  ~LongOperation();
  LongOperation(const LongOperation&) = delete;
  LongOperation& operator=(const LongOperation&) = delete;

  // For what does the work; it may not outlive this object.
  const Progress& progress() const { return progress_; }
  bool stopped() const { return progress_.stopped(); }

 private:
  using Clock = std::chrono::steady_clock;
  [[nodiscard]] bool serve(double done);

  FrontEnd& frontEnd_;
  std::string title_;  // empty: no display of its own
  std::int32_t rows_;
  Clock::time_point start_ = Clock::now();
  Clock::time_point served_ = start_;
  int percent_ = -1;  // shown; -1: there is no display yet
  Progress progress_{[this](double done) { return serve(done); }};
};

}  // namespace tarvex
