#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace tarvex {

class VelsConfiguration;

// One number of an analysis under its full name.
struct ResultRow {
  std::string_view block;  // "uncertainty", "linear histogram", "logarithmic histogram", "measures", "determination"
  std::int32_t variable;   // index among the analysed variables
  std::string item;        // factor, group or term, or number of the bin; empty for the variable as a whole
  std::string quantity;
  double value;
};

// Hands every number that was computed to `take`, block by block within a variable: what exports leave out nothing of.
void forEachResult(const VelsConfiguration& vels, const std::function<void(const ResultRow&)>& take);

}  // namespace tarvex
