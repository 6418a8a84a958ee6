#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace tarvex {

class VelsConfiguration;
struct QuantileTable;

// One number of an analysis under its full name.
struct ResultRow {
  std::string_view block;  // "uncertainty", "linear histogram", "logarithmic histogram", "measures", "determination",
                           // "quantiles", "exceedance"
  std::int32_t variable;   // index among the analysed variables
  std::string item;        // factor, group or term, or number of the bin; empty for the variable as a whole
  std::string quantity;
  std::optional<double> value;  // none: not computed
  std::string remark = {};      // why there is none, of an uncertain factor
};

// Hands every number that an analysis may have to `take`, block by block within a variable: exports leave out nothing.
// A histogram without runs has none.
// Those of `quantiles`, which no file keeps, go with the others of their variable.
void forEachResult(const VelsConfiguration& vels, const QuantileTable& quantiles,
                   const std::function<void(const ResultRow&)>& take);

}  // namespace tarvex
