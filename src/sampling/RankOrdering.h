#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "base/ColumnShelf.h"
#include "base/Progress.h"
#include "correlation/RankTable.h"

namespace tarvex {

class FactorList;
class sampValues;

// Puts the columns of a filled design in the order that a rank table asks for. No column gains or loses a value.
class RankOrdering {
 public:
  // Makes the rank table of the list for the rows of the design, by its rank correlation matrix, or for `rows` rows by
  // its Stein sample. False, with the reason, when it can't serve, and after a stop.
  [[nodiscard]] bool startImanConover(const FactorList& factors, const sampValues& store, const Progress& progress,
                                      std::string& errorText);
  [[nodiscard]] bool startStein(const FactorList& factors, std::int32_t rows, const Progress& progress,
                                std::string& errorText);
  bool isStarted() const { return ranks_ != nullptr; }
  // Takes the column of a factor in hand. False, with the reason, when the store refuses, there isn't enough memory, or
  // after a stop. Requires: isStarted().
  [[nodiscard]] bool openColumn(std::int32_t factor, sampValues& store, const FactorList& factors,
                                const Progress& progress, std::string& errorText);
  // Gives `count` rows of a stochastic factor's column their values, from row `first` on, and the column to the store
  // with its last row. Rows come in rising order. False, with the reason, when the store refuses, or the disk.
  // Requires: openColumn().
  [[nodiscard]] bool placeCells(std::int32_t factor, std::int32_t first, std::int32_t count, sampValues& store,
                                const FactorList& factors, std::string& errorText);
  void release() { *this = {}; }

 private:
  std::shared_ptr<const RankTable> ranks_;
  // Of the column in hand, whose values stand sorted in the store meanwhile; one for each column.
  std::shared_ptr<ColumnShelf<double>> placed_;
  std::vector<double> cells_;
  std::int32_t stochasticIndex_ = 0;  // of the current factor among the stochastic ones, from 0
};

// kRefusedMatrix where the list's rank correlation matrix is in force and isn't positive semidefinite; else empty.
// Draws nothing.
std::string matrixRefusal(const FactorList& factors);

// The place of a stochastic factor among the stochastic factors of the list, from 0.
std::int32_t stochasticIndexOf(const FactorList& factors, std::int32_t factor);

}  // namespace tarvex
