#pragma once

#include <cstddef>
#include <functional>

namespace tarvex {

// The threads among which one call may split its arithmetic. A result must never depend on how many there are.
class Cores {
 public:
  static std::size_t count();            // the calling thread included; as many as the machine has cores at first
  static void use(std::size_t threads);  // 0: as at first
};

// How many parts inParts() makes of so many items.
std::size_t partsOf(std::size_t items, std::size_t least);

// Cuts 0 to `items` into parts of neighbouring items, of `least` at least each, calls work(part, first, last) for all
// of them at a time, `last` exclusive, and returns when all are done. The calling thread does part 0. `least` items
// should take some 50 microseconds, or the start of a thread costs more than it saves. What a part throws is thrown
// here.
void inParts(std::size_t items, std::size_t least,
             const std::function<void(std::size_t part, std::size_t first, std::size_t last)>& work);

}  // namespace tarvex
