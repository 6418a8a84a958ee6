#pragma once

#include <memory>
#include <string>

#include "factors/Factor.h"

namespace tarvex {

// The factor class that a file or a panel calls `typeName`, with its defaults; null for an unknown name. "Dummy" is
// known, "Factor" too.
std::unique_ptr<Factor> makeFactor(const std::string& typeName);

}  // namespace tarvex
