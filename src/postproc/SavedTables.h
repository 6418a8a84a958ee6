#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "postproc/UaStats.h"

namespace tarvex {

class FastStats;
class ImportanceStats;
class MorrisStats;
class PrepConfiguration;
class RegressionStats;
class SensitivityStats;
class SobolStats;
class TextWriter;

// The tables that "Save table" writes, one variable a table. A cell is 20 characters wide and followed by a tab; the
// first row holds the headings, the first column the names. Factors without a measure have its reason in their cells;
// below a table of measures that were not computed stands why.

// Which part of a result a table shows.
struct TableSelection {
  std::int32_t variable = 0;
  std::string name;                   // of the variable; stands above the names of the factors
  std::vector<std::int32_t> records;  // which rows, by position in `records` of the result
};
// All records of a result.
TableSelection wholeTable(const SensitivityStats& stats, std::int32_t variable, const std::string& name);

// The points of a variable's curves, a row each, under the headings: value, count, density, cumulative, complement.
inline constexpr std::array<const char*, 5> kPointHeadings = {"Value", "Count", "Density", "Cumulative", "Complement"};
std::vector<std::array<std::string, 5>> curvePoints(const UaStats& stats, std::int32_t variable, HistogramScale scale);

// Statistics, bounds on the mean and the 101 points of the curves.
void writeUncertaintyTable(TextWriter& out, const UaStats& stats, std::int32_t variable, HistogramScale scale);

// One measure, with the coefficients of determination and the ranks. An asterisk marks what is not significant.
void writeRegressionTable(TextWriter& out, const RegressionStats& stats, const TableSelection& selection,
                          std::int32_t measure);
// `withTotal`: the test was the extended one, on factors or on groups.
void writeFastTable(TextWriter& out, const FastStats& stats, const TableSelection& selection, bool withTotal);
void writeMorrisTable(TextWriter& out, const MorrisStats& stats, const TableSelection& selection);
void writeImportanceTable(TextWriter& out, const ImportanceStats& stats, const TableSelection& selection);
// First and total order, or all terms: their indices, then their closed indices, then the totals of the single factors.
void writeSobolTable(TextWriter& out, const SobolStats& stats, const TableSelection& selection);

// The tables that there are of the measures of a variable, each under a word for the name of its file; the design of
// `prep` tells the test of FAST. They stand while the statistics do.
struct SavedTable {
  std::string word;  // "PEAR", "sensitivity"
  std::function<void(TextWriter&)> write;
};
std::vector<SavedTable> savedTables(const SensitivityStats& stats, const PrepConfiguration& prep,
                                    const TableSelection& selection);

}  // namespace tarvex
