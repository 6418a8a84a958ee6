#pragma once

#include <functional>
#include <initializer_list>
#include <memory>
#include <vector>

namespace tarvex {

// What of a session can change under those who look at it.
enum class Change : unsigned {
  Prep = 1,       // factors, design, sample
  Model = 2,      // the model's choice
  Results = 4,    // what a run brought, or that it is gone
  Measures = 8,   // selected variables and what was computed of them
  Flags = 16,     // busy, modified, stale, the stage, demo mode
  FileName = 32,  // of the project
};

// A set of changes.
class Changes {
 public:
  Changes() = default;
  Changes(std::initializer_list<Change> changes) {
    for (const Change change : changes) add(change);
  }
  void add(Change change) { bits_ |= static_cast<unsigned>(change); }
  bool contains(Change change) const { return (bits_ & static_cast<unsigned>(change)) != 0; }
  bool empty() const { return bits_ == 0; }
  bool operator==(const Changes&) const = default;

 private:
  unsigned bits_ = 0;
};

// Tells whoever wants to know what has changed. A listener is called when an operation is through and everything is
// consistent again; it may start the next one, and subscribe or leave.
class ChangeNotifier {
 public:
  using Listener = std::function<void(Changes)>;
  // Whoever holds it is told; it may outlive the notifier.
  using Subscription = std::shared_ptr<const Listener>;

  [[nodiscard]] Subscription subscribe(Listener listener);
  void tell(Changes changes);

 private:
  std::vector<std::weak_ptr<const Listener>> listeners_;  // in the order of their subscription
};

}  // namespace tarvex
