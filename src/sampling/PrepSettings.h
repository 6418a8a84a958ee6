#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "factors/FactorList.h"
#include "sampling/Sampler.h"

namespace tarvex {

class PrepConfiguration;

// What is edited of a pre-processor configuration, without the sample.
struct PrepSettings {
  // Makes these a copy of others, or of those of a configuration. On false, as when the disk is full, the message is
  // that of the store of a Stein sample or of fixed rows.
  [[nodiscard]] bool copyFrom(const PrepSettings& other, std::string& message);
  [[nodiscard]] bool copyFrom(const PrepConfiguration& prep, std::string& message);

  FactorList factors;
  std::unique_ptr<Sampler> sampler;  // may be null
  std::string sampleFile;            // where the sample will be saved
  std::int32_t order = 0;            // 0 by run, 1 by factor: how that file lists it

  // Whether they describe the sample that `prep` has: the same factors with the same correlation, the same design. On
  // false nothing is known of it, as a Stein sample or fixed rows can't be read; the message is that of their store.
  [[nodiscard]] bool compareWith(const PrepConfiguration& prep, bool& same, std::string& message) const;

 private:
  [[nodiscard]] bool copyFrom(const FactorList& otherFactors, const Sampler* otherSampler, std::string& message);
};

// A configuration of these settings, without a sample.
PrepConfiguration makePrep(PrepSettings settings);

}  // namespace tarvex
