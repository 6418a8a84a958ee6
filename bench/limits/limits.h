#pragma once

#include <cstdint>
#include <string>
#include <vector>

// What the work of a row takes when a program does nothing else: tables in memory, sizes known, no checks, no stop, no
// progress. Written by hand, without the libraries of this repository.
namespace tarvex::limits {

// A column of a Latin hypercube: the density over its support, or the quantile where that is a formula.
struct Quantile {
  double lower = 0.0;  // of the support, or of what is nearly all of it
  double upper = 1.0;
  double (*density)(double x) = nullptr;
  double (*inverse)(double u) = nullptr;
};

// Each returns a number that depends on all results, so that nothing is left out.

// A permutation of strata a column, its values by a table of the quantile. `ranked`: in the order of correlated normal
// scores.
double latin(std::int32_t runs, const std::vector<Quantile>& columns, bool ranked);
// Three inputs by row, and eight.
double ishigami(const std::vector<double>& inputs);
double gFunction(const std::vector<double>& inputs);
// Blocks A, B, B with a column of A, A with a column of B over quasi-random points of dimension 2 * `factors`, at most
// 20.
double sobolDesign(std::int32_t baseSize, std::int32_t factors);
// First and total order of all factors from the blocks of that design.
double sobolIndices(const std::vector<double>& runs, std::int32_t baseSize, std::int32_t factors);
// Spectrum of one curve up to half the frequency, summed.
double fourierSums(const double* runs, std::int32_t count, std::int32_t last);
// Correlations of the columns, raw and by ranks, and the Smirnov distances to the last column. By column.
double regression(const std::vector<std::vector<double>>& columns);
// Mean, products of deviations, third and fourth powers of each column. By row.
double statistics(const std::vector<double>& table, std::int32_t columns);
// Numbers in [0, 1) at ten decimals, and back.
bool writeTable(const std::string& path, const std::vector<double>& table, std::int32_t columns);
double readTable(const std::string& path, std::size_t cells);

}  // namespace tarvex::limits
