#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace tarvex {

class FactorList;
class Sampler;
struct SampleOptions;

// The first of the sizes without which the method that the options name has no design, if it is missing: "--runs".
std::string missingSize(const SampleOptions& options);
bool takesSeed(std::int32_t methodId);

// The sampler that the options ask for. Null, with a message in the words of the options, for what sampling refuses and
// for options that can't be read.
std::unique_ptr<Sampler> makeSampler(const SampleOptions& options, const FactorList& factors, std::string& message);

}  // namespace tarvex
