#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tarvex {

// A part of a sample: consecutive rows that one start of the model takes. Parts are numbered from 0.
struct Part {
  std::int32_t first = 0;
  std::int32_t rows = 0;

  bool operator==(const Part&) const = default;
};

// Cuts `rows` rows into parts whose sizes differ by one at most; never more parts than rows.
std::vector<Part> splitRows(std::int32_t rows, std::int32_t parts);

// "part 7 (runs 70 to 79)", both numbered as outputs number them, from 0.
std::string partText(std::size_t number, const Part& part);

}  // namespace tarvex
