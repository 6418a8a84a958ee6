#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tarvex {

class FactorList;
class Sampler;

// What a user should know of a design before its model is run.
struct DesignFacts {
  std::int64_t runs = 0;              // that a generation makes
  std::string results;                // what can be computed of the model's outputs afterwards
  std::vector<std::string> cautions;  // where this design, over these factors, misleads; the gravest first
};

DesignFacts designFacts(const Sampler& sampler, const FactorList& factors);

}  // namespace tarvex
