#pragma once

#include <memory>
#include <string>

namespace tarvex {

class FactorList;
class Sampler;
struct SampleOptions;

// The sampler that the options ask for, with their settings; what is not given is the sampler class's own. Null, with a
// message, for settings that the method doesn't have or refuses, and for a method that isn't on offer for the list.
std::unique_ptr<Sampler> makeConfiguredSampler(const SampleOptions& options, const FactorList& factors,
                                               std::string& message);

}  // namespace tarvex
