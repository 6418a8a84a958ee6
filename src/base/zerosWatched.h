#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "base/Progress.h"

namespace tarvex {

// Makes `values` so many zeros. A hundred MB take some 50 ms, most of them the system's, which hands out page by page:
// it reports in between, without getting further than `progress` is. False, with `values` empty, after a stop.
template <class Value>
[[nodiscard]] bool zerosWatched(std::vector<Value>& values, std::size_t count, const Progress& progress) {
  constexpr std::size_t kAReport = (std::size_t{1} << 24) / sizeof(Value);  // 16 MB, some 8 ms
  values = {};
  values.reserve(count);
  const Progress here = progress.part(0.0, 0.0);
  while (values.size() < count) {
    values.resize(std::min(count, values.size() + kAReport));
    if (here.report(0.0)) continue;
    values = {};
    return false;
  }
  return true;
}

}  // namespace tarvex
