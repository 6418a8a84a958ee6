#pragma once

#include <functional>
#include <string>
#include <vector>

namespace tarvex {

struct Document;

// Adds the correlations of named columns: as a matrix, or, of more columns than fit a screen, as their strongest pairs.
void reportCorrelations(Document& out, const std::vector<std::string>& names,
                        const std::function<double(std::int32_t, std::int32_t)>& at);

}  // namespace tarvex
