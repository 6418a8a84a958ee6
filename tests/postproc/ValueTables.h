#pragma once

#include <cstdint>

#include "factors/Factor.h"
#include "factors/makeFactor.h"
#include "postproc/OutputTable.h"
#include "sampling/PrepConfiguration.h"
#include "support/Test.h"

namespace tarvex {

using Columns = std::vector<std::vector<double>>;

inline sampValues tableOf(const Columns& columns) {
  sampValues table;
  const auto width = static_cast<std::int32_t>(columns.size());
  if (!table.allocate(width)) return table;
  std::vector<double> row(columns.size());
  for (std::size_t r = 0; r < columns.front().size(); ++r) {
    for (std::size_t c = 0; c < columns.size(); ++c) row[c] = columns[c][r];
    EXPECT_GT(table.addRow(row.data()), 0);
  }
  return table;
}

// A sample as its values alone. `types` names the factors' classes, Uniform where it is shorter than the columns.
inline PrepConfiguration sampleOf(const Columns& columns, const std::vector<std::string>& types = {}) {
  PrepConfiguration prep;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    auto factor = makeFactor(i < types.size() ? types[i] : "Uniform");
    factor->name = "x" + std::to_string(i + 1);
    prep.factors.addFactor(std::move(factor));
  }
  prep.samples = tableOf(columns);
  return prep;
}

// Numbers in (0, 1) that a test can have by the thousand: a linear congruential generator (D. Knuth, MMIX).
class TestNumbers {
 public:
  explicit TestNumbers(std::uint64_t seed) : state_(seed) {}
  double next() {
    state_ = state_ * 6364136223846793005u + 1442695040888963407u;
    return (static_cast<double>(state_ >> 11) + 0.5) * 0x1p-53;
  }
  std::vector<double> column(std::size_t rows) {
    std::vector<double> values(rows);
    for (double& value : values) value = next();
    return values;
  }

 private:
  std::uint64_t state_;
};

}  // namespace tarvex
