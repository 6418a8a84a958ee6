#pragma once

#include <cstdint>

namespace tarvex {

// What a sampler asks for the order of a column's values: the rank, from 0, that a row is to hold.
class RankTable {
 public:
  virtual ~RankTable() = default;
  // False when no correlation could be computed; rankOf then gives 0.
  virtual bool isValid() const = 0;
  // `column` counts correlatable factors only. 0 when out of range.
  virtual std::int32_t rankOf(std::int32_t column, std::int32_t row) const = 0;
};

}  // namespace tarvex
