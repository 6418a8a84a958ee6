#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "batch/Commands.h"

namespace tarvex {

class PartStates;

// How a run in parts shows on the console: on a terminal a line of parts, runs, rate and remaining time that is written
// anew; everywhere what fails, as it comes.
class PartsDisplay {
 public:
  explicit PartsDisplay(const Console& console) : console_(console) {}
  ~PartsDisplay() { erase(); }
  PartsDisplay(const PartsDisplay&) = delete;
  PartsDisplay& operator=(const PartsDisplay&) = delete;

  void show(const PartStates& states);
  void tell(const std::string& text);

 private:
  using Clock = std::chrono::steady_clock;
  void erase();

  const Console& console_;
  std::size_t width_ = 0;
  std::int32_t rowsAtStart_ = -1;
  Clock::time_point start_;
  Clock::time_point next_{};
};

}  // namespace tarvex
