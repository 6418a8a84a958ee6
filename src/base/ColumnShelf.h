#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "base/WorkingFile.h"

namespace tarvex {

// Bytes up to which a ColumnShelf stays in memory.
class ShelfMemory {
 public:
  static std::size_t limit() { return limit_; }
  static void use(std::size_t bytes) { limit_ = bytes; }

 private:
  static inline std::atomic<std::size_t> limit_ = std::size_t{64} << 20;
};

// Columns of numbers that a computation lays by: in memory while they are few, else in a working file. Operations
// return false on failure of the file, with the reason in errorText(). Rows and columns are within the table.
template <class Number>
class ColumnShelf {
 public:
  static bool isLarge(std::size_t columns, std::size_t rows) {
    return columns * rows * sizeof(Number) > ShelfMemory::limit();
  }

  ColumnShelf() = default;
  // Throws std::bad_alloc. What was never put has no meaning.
  ColumnShelf(std::size_t columns, std::size_t rows) : rows_(rows) {
    if (!isLarge(columns, rows)) columns_.resize(columns);
  }

  [[nodiscard]] bool put(std::size_t column, std::size_t first, const Number* numbers, std::size_t count) {
    if (columns_.empty()) return file_.write(offsetOf(column, first), numbers, count * sizeof(Number));
    columns_[column].resize(rows_);
    std::copy_n(numbers, count, columns_[column].data() + first);
    return true;
  }
  // Takes a whole column over.
  [[nodiscard]] bool put(std::size_t column, std::vector<Number>&& numbers) {
    if (columns_.empty()) return put(column, 0, numbers.data(), numbers.size());
    columns_[column] = std::move(numbers);
    return true;
  }
  [[nodiscard]] bool get(std::size_t column, std::size_t first, Number* numbers, std::size_t count) const {
    if (columns_.empty()) return file_.read(offsetOf(column, first), numbers, count * sizeof(Number));
    std::copy_n(columns_[column].data() + first, count, numbers);
    return true;
  }
  // A whole column where it is in memory, else null.
  std::vector<Number>* whole(std::size_t column) { return columns_.empty() ? nullptr : &columns_[column]; }
  // `count` numbers: where they are in memory, else in `buffer`. Null on failure.
  const Number* view(std::size_t column, std::size_t first, std::size_t count, std::vector<Number>& buffer) const {
    if (!columns_.empty()) return columns_[column].data() + first;
    buffer.resize(count);
    return get(column, first, buffer.data(), count) ? buffer.data() : nullptr;
  }

  const std::string& errorText() const { return file_.errorText(); }

 private:
  std::uint64_t offsetOf(std::size_t column, std::size_t row) const {
    return (std::uint64_t{column} * rows_ + row) * sizeof(Number);
  }

  std::size_t rows_ = 0;
  std::vector<std::vector<Number>> columns_;  // empty where the file holds them
  WorkingFile file_;
};

}  // namespace tarvex
