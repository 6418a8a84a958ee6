#pragma once

#include <cstdint>
#include <vector>

namespace tarvex {

inline constexpr std::int32_t kMaxFrequencies = 50;

// The frequencies of the classic Fourier amplitude sensitivity test for that many factors, free of interference up to
// the fourth order (R. I. Cukier, J. H. Schaibly, K. E. Shuler, J. Chem. Phys. 63, 1140-1149, 1975; G. J. McRae, J. W.
// Tilden, J. H. Seinfeld, Comput. Chem. Eng. 6, 15-25, 1982). Empty for counts outside 2 to 50.
std::vector<std::int32_t> classicFrequencies(std::int32_t stochasticCount);

// The highest frequency that the check of the sample size counts with. Requires: a count from 2 to 50.
std::int32_t checkedClassicFrequency(std::int32_t stochasticCount);

}  // namespace tarvex
