#pragma once

#include <cstdint>
#include <string>

namespace tarvex {

// What a sampler asks for the order of a column's values: the rank, from 0, that a row is to hold.
class RankTable {
 public:
  virtual ~RankTable() = default;
  // False when no correlation could be computed; it then has no ranks.
  virtual bool isValid() const = 0;
  // The ranks of `count` rows of a column from `row` on, valid until the next call; `column` counts correlatable
  // factors only. Null, with the reason, out of range and when a working file can't be read.
  virtual const std::int32_t* ranks(std::int32_t column, std::int32_t row, std::int32_t count,
                                    std::string& errorText) const = 0;
  // One of them; 0 where there is none.
  std::int32_t rankOf(std::int32_t column, std::int32_t row) const {
    std::string unsaid;
    const std::int32_t* const rank = ranks(column, row, 1, unsaid);
    return rank != nullptr ? *rank : 0;
  }
};

}  // namespace tarvex
