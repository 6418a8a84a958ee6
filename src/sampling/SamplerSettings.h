#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "sampling/Sampler.h"
#include "sampling/SamplerFactory.h"

namespace tarvex {

// What can be set of the sampling methods.
enum class Setting {
  Runs,
  Seed,
  BaseDesign,
  Replications,
  Trajectories,
  Levels,
  Mode,
  Groups,
  BaseSize,
  Order,
  Cheap,
  Rows
};

struct NamedGroup {
  std::string name;
  std::vector<std::string> factors;
};

// The settings of one sampling method as a value: what a panel edits and a command line gives. What isn't given is the
// sampler class's own.
struct SamplerSettings {
  std::int32_t method = kRandom;
  std::optional<std::int64_t> runs;                      // random, Latin, lp-tau, Fast
  std::optional<std::int64_t> seed;                      // all but lp-tau, Sobol and fixed
  std::optional<std::int64_t> baseDesign;                // replicated Latin
  std::optional<std::int64_t> replications;              // replicated Latin
  std::int32_t choice = 0;                               // replicated Latin: anything but 0 makes no runs
  std::vector<std::string> chosen;                       // replicated Latin: the factors that are flagged
  std::optional<std::int64_t> trajectories;              // Morris
  std::optional<std::int64_t> levels;                    // Morris
  std::optional<std::int64_t> mode;                      // Fast: FastSampler::AnalysisMode
  std::vector<NamedGroup> groups;                        // Fast, mode groups
  std::optional<std::int64_t> baseSize;                  // Sobol
  std::optional<std::int64_t> order;                     // Sobol: indices up to it; without it first and total order
  bool cheap = false;                                    // Sobol, with an order
  std::optional<std::vector<std::vector<double>>> rows;  // fixed: runs, a value per factor of the list
  std::int32_t listing = 0;                              // fixed: 0 by run, 1 by factor

  bool isGiven(Setting setting) const;
};

// What messages call a setting.
using SettingWords = std::function<std::string(Setting)>;
std::string settingName(Setting setting);

// The settings that a method takes.
const std::vector<Setting>& settingsOf(std::int32_t method);
// Those that a sampler has, each given but the rows: of a fresh one its class's defaults.
SamplerSettings settingsFrom(const Sampler& sampler);

// The runs of a design with these settings over so many stochastic factors, before anything is checked; 0 where a
// setting that they depend on isn't given.
std::int64_t designSize(const SamplerSettings& settings, std::int32_t stochasticCount);

// A sampler with these settings for a generation over the list. Null, with a message in the user's words, for settings
// that the method doesn't have or refuses, that contradict each other or give no design, and for a method that isn't on
// offer for the list.
std::unique_ptr<Sampler> makeSampler(const SamplerSettings& settings, const FactorList& factors, std::string& message,
                                     const SettingWords& words = settingName);

}  // namespace tarvex
