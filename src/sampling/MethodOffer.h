#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tarvex {

class FactorList;

// All methods, in the order in which panels list them.
std::vector<std::int32_t> methodsInOrder();
// Why a method can't be used with a list's correlation and number of factors, and what would be possible; empty when it
// can.
std::string whyNotOffered(std::int32_t methodId, const FactorList& factors);

}  // namespace tarvex
