#pragma once

#include <cstdint>
#include <vector>

#include "base/Progress.h"

namespace tarvex {

// What is told of a matrix of correlations that isn't positive semidefinite. Matrices are by row, symmetric, of `order`
// rows with 1 on the diagonal.

// The smallest eigenvalue. False, with `value` as it was, without the memory and for numbers that aren't finite.
[[nodiscard]] bool smallestEigenvalue(const std::vector<float>& matrix, std::int32_t order, double& value);

// The matrix of correlations that lies nearest by the sum of squared differences, among those that are positive
// definite by so much that six digits of its numbers, which files keep, say one that is valid too
// (N.J. Higham, Computing the nearest correlation matrix - a problem from finance, IMA Journal of Numerical Analysis
// 22, 2002: alternating projections with Dykstra's correction). Its numbers have six decimals and lie within some 1e-5
// of the nearest ones. False, with `nearest` as it was, after a stop, without the memory and for numbers that aren't
// finite.
[[nodiscard]] bool nearestCorrelation(const std::vector<float>& matrix, std::int32_t order, std::vector<float>& nearest,
                                      const Progress& progress = {});

}  // namespace tarvex
