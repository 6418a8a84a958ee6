#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/ColumnShelf.h"
#include "base/Progress.h"
#include "correlation/PlaceColumns.h"
#include "correlation/RankTable.h"

namespace tarvex {

class FactorList;

// Ranks that give the columns of a sample a wanted rank correlation (R.L. Iman and W.J. Conover, A distribution-free
// approach to inducing rank correlation among input variables, Communications in Statistics B11, 1982): shuffled normal
// scores, correlated by the Cholesky factor of the wanted matrix.
class ImanConover : public RankTable {
 public:
  static constexpr std::int32_t kSeed = 5648423;

  // From the rank correlation matrix of the list, for `rows` rows. After a stop it isn't valid.
  ImanConover(const FactorList& factors, std::int32_t rows, std::int32_t seed = kSeed, const Progress& progress = {});
  // From a matrix by row. Without rows it only tells whether the matrix is acceptable.
  ImanConover(const std::vector<float>& matrix, std::int32_t count, std::int32_t rows = 0);

  // Whether the list's matrix is positive semidefinite. Draws nothing.
  static bool accepts(const FactorList& factors) { return ImanConover(factors, 0).isValid(); }

  // False for a matrix that isn't positive semidefinite, when there isn't enough memory, and after a stop.
  bool isValid() const override { return !failed_; }
  // What ended a computation that the matrix allows; empty when nothing did.
  const std::string& errorText() const { return errorText_; }
  const std::int32_t* ranks(std::int32_t column, std::int32_t row, std::int32_t count,
                            std::string& message) const override {
    return ranks_.at(column, row, count, message);
  }

 private:
  void compute(const Progress& progress);
  [[nodiscard]] bool build(const Progress& progress);
  [[nodiscard]] bool layScores(const Progress& progress);
  [[nodiscard]] bool shufflePlaces(const Progress& progress);
  [[nodiscard]] bool factorise();
  [[nodiscard]] bool correlate(const Progress& progress);
  [[nodiscard]] bool correlateColumns(std::int32_t first, std::int32_t last, ColumnShelf<double>& sums,
                                      const Progress& progress);
  [[nodiscard]] bool addScores(std::int32_t first, std::int32_t last, ColumnShelf<double>& sums,
                               const Progress& progress);
  [[nodiscard]] bool rankSums(std::size_t sum, std::int32_t column, ColumnShelf<double>& sums,
                              const Progress& progress);
  bool fail(const std::string& reason);  // always false
  double& target(std::int32_t row, std::int32_t column) { return target_[index(row, column)]; }
  double& cholesky(std::int32_t row, std::int32_t column) { return cholesky_[index(row, column)]; }
  std::size_t index(std::int32_t row, std::int32_t column) const;

  std::int32_t factorCount_;
  std::int32_t rowCount_;
  std::int32_t seed_;  // the word for uniformRandom
  bool failed_ = false;
  std::string errorText_;
  std::vector<double> target_;    // factorCount_ squared, by row
  std::vector<double> cholesky_;  // the same, lower triangle
  ColumnShelf<double> scores_;    // one column, by rank; only during construction
  // By column: first the place of each row's score in scores_, then the row's rank. Four bytes a cell, so that a
  // million rows of ten factors take 40 MB.
  PlaceColumns ranks_;
};

}  // namespace tarvex
