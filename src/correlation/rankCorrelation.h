#pragma once

#include <vector>

namespace tarvex {

// Spearman's rank correlation of two columns of one length; equal values share the mean of their ranks. 0 where one of
// them has no two different values, and without the memory for the ranks. Values that are not numbers rank last.
double rankCorrelation(const std::vector<double>& x, const std::vector<double>& y);

}  // namespace tarvex
