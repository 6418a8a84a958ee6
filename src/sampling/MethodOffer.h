#pragma once

#include <cstdint>
#include <string>

namespace tarvex {

class FactorList;

// Whether a method may be used with a list's correlation and number of factors. When not, the reason says what would
// be possible.
bool isMethodOffered(std::int32_t methodId, const FactorList& factors, std::string* reason = nullptr);

}  // namespace tarvex
