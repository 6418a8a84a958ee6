#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "factors/FactorList.h"
#include "sampling/Sampler.h"

namespace tarvex {

class PrepConfiguration;

// What is edited of a pre-processor configuration: a value without the sample.
struct PrepSettings {
  PrepSettings() = default;
  explicit PrepSettings(const PrepConfiguration& prep);
  PrepSettings(const PrepSettings& other);
  PrepSettings& operator=(const PrepSettings& other);
  PrepSettings(PrepSettings&&) = default;
  PrepSettings& operator=(PrepSettings&&) = default;

  FactorList factors;
  std::unique_ptr<Sampler> sampler;  // may be null
  std::string sampleFile;            // where the sample will be saved
  std::int32_t order = 0;            // 0 by run, 1 by factor: how that file lists it

  // Whether they describe the sample that `prep` has: the same factors with the same correlation, the same design.
  bool describeSampleOf(const PrepConfiguration& prep) const;
};

// A configuration of these settings, without a sample.
PrepConfiguration makePrep(PrepSettings settings);

}  // namespace tarvex
