#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/Progress.h"
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
  // The rank within the row's block.
  std::int32_t rankOf(std::int32_t column, std::int32_t row) const override;

  std::string errorText = "No errors";

 private:
  bool accepts(const FactorList& factors, std::int32_t rows);
  [[nodiscard]] bool addRanks(const sampValues& stein, std::int32_t column, std::int32_t blockRows, std::int32_t blocks,
                              const Progress& progress);

  bool valid_ = false;
  std::vector<std::vector<std::int32_t>> ranks_;  // by correlatable factor
};

}  // namespace tarvex
