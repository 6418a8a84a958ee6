#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "base/Progress.h"
#include "plots/Figure.h"

namespace tarvex {

class PrepConfiguration;
struct RunTable;

// Correlations of each column with each; those of a column with a value that is no number are none.
struct CorrelationMatrix {
  std::vector<std::string> names;
  std::vector<double> values;  // row by row
  std::int32_t runs = 0;       // that they are of
  std::string kind;            // "Rank correlations"

  double at(std::size_t row, std::size_t column) const { return values[row * names.size() + column]; }
};

enum class CorrelationKind { Values, Ranks };

// Of the columns of a table over the runs given; over all, where none is. 0 where a column has no deviation. False,
// with the reason, when there isn't enough memory, and after a stop; `matrix` is then as it was. Requires: runs that
// there are.
[[nodiscard]] bool correlateColumns(const RunTable& table, const std::vector<std::int32_t>& runs, CorrelationKind kind,
                                    CorrelationMatrix& matrix, std::string& message, const Progress& progress = {});
// The correlations that the sample file has among its statistics; computed, where it has none. The same for failures.
[[nodiscard]] bool sampleCorrelations(const PrepConfiguration& prep, CorrelationMatrix& matrix, std::string& message,
                                      const Progress& progress = {});

// The matrix as squares, white at 0, blue below, red above.
Figure correlationMap(const CorrelationMatrix& matrix);

}  // namespace tarvex
