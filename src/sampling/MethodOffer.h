#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tarvex {

class FactorList;

// All methods, in the order in which panels list them.
std::vector<std::int32_t> methodsInOrder();
// Whether a method may be used with a list's correlation and number of factors. When not, the reason says what would
// be possible.
bool isMethodOffered(std::int32_t methodId, const FactorList& factors, std::string* reason = nullptr);

}  // namespace tarvex
