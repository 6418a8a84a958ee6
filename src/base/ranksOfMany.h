#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "base/Progress.h"

namespace tarvex {

// Gives `count` numbers from number `first` on; false on failure.
using NumberSource = std::function<bool(std::size_t first, std::size_t count, double* numbers)>;

// The ranks that ranksOf() gives, of numbers that needn't be in memory together: they are read over and over, and
// sorted a million at a time. False, with the result empty, when the source fails or there isn't enough memory, and
// after a stop.
[[nodiscard]] bool ranksOfMany(std::size_t count, const NumberSource& source, std::vector<std::int32_t>& ranks,
                               const Progress& progress = {});

}  // namespace tarvex
