#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/Progress.h"
#include "correlation/PlaceColumns.h"
#include "correlation/RankTable.h"

namespace tarvex {

class FactorList;
class sampValues;

// Ranks taken from the list's Stein sample as it stands: its first rows are cut in blocks, and in each block every row
// gets the rank of its value.
class SteinRanks : public RankTable {
 public:
  // `blocks` blocks of `blockRows` rows for a sample of `rows` rows. Not valid, with the reason in errorText, when the
  // Stein sample is empty, too small or can't be read, and after a stop.
  SteinRanks(const FactorList& factors, std::int32_t rows, std::int32_t blockRows, std::int32_t blocks,
             const Progress& progress = {});

  bool isValid() const override { return valid_; }
  // The ranks within the rows' blocks.
  const std::int32_t* ranks(std::int32_t column, std::int32_t row, std::int32_t count,
                            std::string& message) const override {
    return ranks_.at(column, row, count, message);
  }

  std::string errorText = "No errors";

 private:
  bool accepts(const FactorList& factors, std::int32_t rows);
  [[nodiscard]] bool putRanks(const sampValues& stein, std::int32_t column, std::int32_t blockRows, std::int32_t blocks,
                              std::size_t place, const Progress& progress);

  bool valid_ = false;
  PlaceColumns ranks_;  // by correlatable factor
};

}  // namespace tarvex
