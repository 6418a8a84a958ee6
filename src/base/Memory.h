#pragma once

#include <new>
#include <stdexcept>

namespace tarvex {

// What is told when the user's counts ask for more memory than there is.
inline constexpr const char* kNotEnoughMemory = "Not enough memory.";

// Does `work` and tells whether the memory that it asked for was there: sizes that come from the user's counts end in a
// failure, not in an exception.
template <class Work>
[[nodiscard]] bool fitsInMemory(Work&& work) {
  try {
    work();
    return true;
  } catch (const std::bad_alloc&) {
    return false;
  } catch (const std::length_error&) {
    return false;
  }
}

}  // namespace tarvex
