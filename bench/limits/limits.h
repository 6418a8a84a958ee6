#pragma once

#include <cstdint>
#include <string>
#include <vector>

// What the work of a row takes when a program does nothing else: tables in memory, sizes known, no checks, no stop, no
// progress. Written by hand, without the libraries of this repository.
namespace tarvex::limits {

// Each returns a number that depends on all results, so that nothing is left out.

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
