#pragma once

#include "app/RunController.h"

namespace tarvex {

inline constexpr const char* kWriteError = "Write error";  // the title of what is said of files chosen by the user

// Lasts as long as an operation; at the end of the outermost one its changes are told.
class RunController::Scope {
 public:
  explicit Scope(RunController& controller) : controller_(controller) { ++controller_.depth_; }
  ~Scope() {
    if (--controller_.depth_ == 0) controller_.announce();
  }
  Scope(const Scope&) = delete;
  Scope& operator=(const Scope&) = delete;

 private:
  RunController& controller_;
};

// Holds `busy` for the time in which an operation serves the user's events, however it ends.
class RunController::BusyScope {
 public:
  explicit BusyScope(RunController& controller) : controller_(controller) {
    controller_.setFlag(controller_.busy_, true);
    controller_.announce();
  }
  ~BusyScope() { controller_.setFlag(controller_.busy_, false); }
  BusyScope(const BusyScope&) = delete;
  BusyScope& operator=(const BusyScope&) = delete;

 private:
  RunController& controller_;
};

}  // namespace tarvex
