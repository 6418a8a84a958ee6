#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "base/ColumnShelf.h"

namespace tarvex {

// The columns of a rank table: places or ranks, four bytes a cell, beyond memory if need be.
class PlaceColumns {
 public:
  PlaceColumns() = default;
  PlaceColumns(std::size_t columns, std::size_t rows) : columns_(columns), rows_(rows), shelf_(columns, rows) {}

  [[nodiscard]] bool put(std::size_t column, std::vector<std::int32_t>&& places) {
    stretchRows_ = 0;
    return shelf_.put(column, std::move(places));
  }
  // Valid until the next call. Null, with the reason, out of range and when the working file can't be read.
  const std::int32_t* at(std::int32_t column, std::int32_t row, std::int32_t count, std::string& errorText) const;

  bool isLarge() const { return ColumnShelf<std::int32_t>::isLarge(columns_, rows_); }
  const std::string& errorText() const { return shelf_.errorText(); }

 private:
  std::size_t columns_ = 0;
  std::size_t rows_ = 0;
  ColumnShelf<std::int32_t> shelf_;
  // What was read last from the file: rows asked for one by one lie near each other.
  mutable std::vector<std::int32_t> stretch_;
  mutable std::size_t stretchColumn_ = 0;
  mutable std::size_t stretchFirst_ = 0;
  mutable std::size_t stretchRows_ = 0;
};

}  // namespace tarvex
