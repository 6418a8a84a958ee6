#include "panels/sampling/methodKinds.h"

#include <algorithm>

namespace tarvex {
namespace {

using enum ListSetting::Unlisted;

constexpr const char* kNotPositive = "  Seed and Number of executions must be positive values";
constexpr const char* kIncorrect = "Incorrect value for Seed or Number of executions";

// 16, 32, ...
std::vector<std::int64_t> powers(int count) {
  constexpr int kFirstPower = 4;
  std::vector<std::int64_t> values;
  for (int i = 0; i < count; ++i) values.push_back(std::int64_t{1} << (i + kFirstPower));
  return values;
}

}  // namespace

// clang-format off
const MethodKind& methodKind(std::int32_t method) {
  using Settings = SamplerSettings;
  constexpr int kSequenceSizes = 17;  // up to 1,048,576 runs
  constexpr int kBaseSizes = 9;       // up to 4096 runs a block
  static const std::vector<MethodKind> kinds{
      {kFast, "PFast", "Fast", "FAST",
       {{"NExecution", &Settings::runs, "  Number of executions must be a positive value"},
        {"NSeed", &Settings::seed, nullptr}}, {}},
      {kFixed, "PFixed", "Fixed", "Fixed samples selection", {}, {}},
      {kLatin, "PLatin", "Latin", "Parameters for Latin Hypercube",
       {{"NExecution", &Settings::runs, kIncorrect}, {"NSeed", &Settings::seed, kIncorrect}}, {}},
      {kLpTau, "PLpTau", "LpTau", "Parameters for QuasiRandom LpTau", {},
       {{"OExecutions", &Settings::runs, powers(kSequenceSizes), true, NextBelow}}},
      {kMorris, "PMorris", "Morris", "Parameters for Morris",
       {{"NSeed", &Settings::seed, nullptr}},
       {{"OExecution", &Settings::trajectories, {4, 5, 6, 7, 8, 9, 10}, true, Itself},
        {"OLevels", &Settings::levels, {4, 6, 8}, false, First}}},
      {kRandom, "PRandom", "Random", "Parameters for Random generation",
       {{"NExecution", &Settings::runs, kNotPositive}, {"NSeed", &Settings::seed, kNotPositive}}, {}},
      {kRepLatin, "PRepLatin", "Replicated Latin Hypercube", "Replicated Latin Hypercube for Importance measures",
       {{"NBaseDesign", &Settings::baseDesign, kIncorrect},
        {"NReplications", &Settings::replications, kIncorrect},
        {"NSeed", &Settings::seed, kIncorrect}}, {}},
      {kSobol, "PSobol", "Sobol", "SOBOL", {},
       {{"OExecutions", &Settings::baseSize, powers(kBaseSizes), true, Itself}}},
  };
  return *std::ranges::find(kinds, method, &MethodKind::method);
}
// clang-format on

}  // namespace tarvex
