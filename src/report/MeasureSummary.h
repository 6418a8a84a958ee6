#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "postproc/SensitivityStats.h"

namespace tarvex {

class PrepConfiguration;

// What the measures of one variable say, in sentences that claim no more than the measures can carry.
struct MeasureSummary {
  std::string leads;  // what drives the variable; alone where there is nothing more to say
  std::string trust;  // how sure that is
  std::string next;   // what to do with it
};

// What the sentences need to know beside the measures.
struct MeasureContext {
  std::string variable;  // its name
  std::int32_t runs = 0;
  std::int32_t trajectories = 0;  // of a Morris design
  bool correlated = false;        // factors were asked to be
};
MeasureContext measureContext(const PrepConfiguration& prep, const std::string& variable);

// Requires: computed statistics and a variable that they have.
MeasureSummary summarise(const SensitivityStats& statistics, std::int32_t variable, const MeasureContext& context);

// The members of the family: for the regression measures, the effects of Morris, and shares of the variance.
MeasureSummary summariseRegression(const SensitivityStats& statistics, std::int32_t variable,
                                   const MeasureContext& context);
MeasureSummary summariseEffects(const SensitivityStats& statistics, std::int32_t variable,
                                const MeasureContext& context);
MeasureSummary summariseShares(const SensitivityStats& statistics, std::int32_t variable,
                               const MeasureContext& context);

// A factor, or a group of them, with a measure that is a finite number.
struct Measured {
  std::string name;
  double value = 0.0;
  std::size_t record = 0;
};
// By size, the largest first; without terms of several factors.
std::vector<Measured> measuredFactors(const SensitivityStats& statistics, std::int32_t variable, std::size_t slot);

// "a", "a and b", "a, b and c"; of more than `most` "a, b and 3 more".
std::string listed(const std::vector<std::string>& names, std::size_t most);
// A share of 0.314 as "31 %", one below a half percent as "less than 1 %".
std::string shareText(double share);
// How many of the first factors are told by name.
inline constexpr std::size_t kToldFactors = 3;
inline constexpr std::size_t kToldNames = 8;  // in lists of names alone

}  // namespace tarvex
