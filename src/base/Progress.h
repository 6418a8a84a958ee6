#pragma once

#include <functional>
#include <memory>
#include <utility>

namespace tarvex {

// Through this a long operation says how far it is, and learns that it shall stop. It is handed down by const
// reference, as the last argument; the one made by `{}` is for callers whom nobody watches: it never stops anything.
//
// An operation that can take longer than 0.2 s calls report() so often that less than 20 ms lie between two calls, and
// not in its innermost loop: the listener serves the user's events meanwhile. A report that is answered by false ends
// the operation as a failure does: its object stays as it was. From then on every report answers false, so a loop
// within a loop needs no flag of its own, and who called tells a stop from a failure by stopped().
class Progress {
 public:
  // Gets the part that is done, 0 to 1; false: stop.
  using Listener = std::function<bool(double done)>;

  Progress() = default;
  explicit Progress(Listener listener) : state_(std::make_shared<State>(State{std::move(listener), false})) {}

  // `done` is 0 to 1 and never less than in the report before. Returns false when the operation shall stop.
  [[nodiscard]] bool report(double done) const {
    if (!state_) return true;
    if (!state_->stopped) state_->stopped = !state_->listener(from_ + done * span_);
    return !state_->stopped;
  }
  // The same for row `row` of `count`.
  template <class Integer>
  [[nodiscard]] bool report(Integer row, Integer count) const {
    return report(count > 0 ? static_cast<double>(row) / static_cast<double>(count) : 1.0);
  }

  // Whether a report was answered by false.
  [[nodiscard]] bool stopped() const { return state_ && state_->stopped; }

  // For a step of the operation: its 0 to 1 are `from` to `to` of this one. A stop of either is a stop of both.
  [[nodiscard]] Progress part(double from, double to) const {
    Progress step = *this;
    step.from_ = from_ + from * span_;
    step.span_ = (to - from) * span_;
    return step;
  }

 private:
  struct State {
    Listener listener;
    bool stopped;
  };

  std::shared_ptr<State> state_;  // empty: nobody watches
  double from_ = 0.0;
  double span_ = 1.0;
};

// What an operation leaves as the reason of its end where it was stopped; nobody is shown it.
inline constexpr const char* kStoppedText = "stopped";

}  // namespace tarvex
