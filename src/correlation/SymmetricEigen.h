#pragma once

#include <cstddef>
#include <vector>

#include "base/Progress.h"

namespace tarvex {

// Eigenvalues of a real symmetric matrix, on request with vectors: Householder reflections make it tridiagonal, shifted
// QR steps then diagonal (J.H. Wilkinson, The Algebraic Eigenvalue Problem, 1965, chapters 5 and 8). Values are good to
// some units of rounding of the largest. 200 rows take some ten milliseconds, five times that with vectors; the time
// grows with the cube of the rows.
class SymmetricEigen {
 public:
  enum class Wanted { Values, Vectors };

  // `matrix` holds order * order finite numbers by row; only those on the diagonal and to its right are read. False,
  // with nothing to be had, after a stop, without the memory, and where numbers aren't finite or
  // come to be so.
  [[nodiscard]] bool compute(std::vector<double> matrix, std::size_t order, Wanted wanted,
                             const Progress& progress = {});

  // In no order.
  const std::vector<double>& values() const { return values_; }
  // The `order` components of the vector of values()[i]; they are perpendicular to each other and of length 1.
  // Requires: vectors were wanted.
  const double* vector(std::size_t i) const { return vectors_.data() + i * values_.size(); }
  double smallest() const;  // 0 for a matrix without rows

 private:
  [[nodiscard]] bool solve(std::vector<double>& matrix, std::size_t order, Wanted wanted, const Progress& progress);
  [[nodiscard]] bool makeTridiagonal(std::vector<double>& matrix, std::vector<double>& factors,
                                     const Progress& progress);
  [[nodiscard]] bool collectReflections(const std::vector<double>& matrix, const std::vector<double>& factors,
                                        const Progress& progress);
  [[nodiscard]] bool makeDiagonal(const Progress& progress);
  void step(std::size_t first, std::size_t last);
  void turn(std::size_t row, double cosine, double sine);

  std::vector<double> values_;   // first the diagonal of the tridiagonal matrix
  std::vector<double> beside_;   // what stands beside it
  std::vector<double> vectors_;  // by row; empty when they aren't wanted
};

}  // namespace tarvex
