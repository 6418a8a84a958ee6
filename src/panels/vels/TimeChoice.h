#pragma once

#include <optional>

#include "app/Notifier.h"

namespace tarvex {

// The time that all windows of results show, picked in any of them.
class TimeChoice {
 public:
  using Changed = Notifier<>;

  const std::optional<double>& time() const { return time_; }  // nothing: none was picked yet
  void pick(double time) {
    if (time_ == time) return;
    time_ = time;
    changed_.tell();
  }
  // Calls the listener after every change, as long as the subscription is held.
  [[nodiscard]] Changed::Subscription subscribe(Changed::Listener listener) {
    return changed_.subscribe(std::move(listener));
  }

 private:
  std::optional<double> time_;
  Changed changed_;
};

}  // namespace tarvex
