#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tarvex {

class FactorList;

// What the designs that fill the store run by run have in common.

// Indices of the factors that a design varies, in list order.
std::vector<std::int32_t> stochasticFactors(const FactorList& factors);
// A cell per factor of the list: constants at their value, all others 0.
std::vector<double> constantRow(const FactorList& factors);
// What is said when point number `run` + 1 of the LP-tau sequence can't be made.
std::string pointFailure(std::int32_t run);

}  // namespace tarvex
