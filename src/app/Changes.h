#pragma once

#include <initializer_list>

#include "app/Notifier.h"

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

using ChangeNotifier = Notifier<Changes>;

}  // namespace tarvex
