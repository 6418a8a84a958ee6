#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace tarvex {

// Prints the correlations of named columns: as a matrix, or, of more columns than fit a screen, as their strongest
// pairs.
void printCorrelations(std::ostream& out, const std::vector<std::string>& names,
                       const std::function<double(std::int32_t, std::int32_t)>& at);

}  // namespace tarvex
