#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "sampling/Sampler.h"

namespace tarvex {

// The name of a method as files and panels show it; empty for a number outside 0 to 7.
std::string_view methodNameOf(std::int32_t methodId);
// A sampler of that method with its class's defaults; null for a number outside 0 to 7.
std::unique_ptr<Sampler> makeSampler(std::int32_t methodId);
// Reads the method number, its name line and the section. Null, with the reader failed, for bad content.
std::unique_ptr<Sampler> readSampler(TextReader& in);

}  // namespace tarvex
