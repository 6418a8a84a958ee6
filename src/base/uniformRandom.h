#pragma once

#include <cstddef>
#include <cstdint>

namespace tarvex {

// The system's one pseudo-random generator: two combined multiplicative congruential streams (P. L'Ecuyer, CACM 31,
// 1988) behind a shuffle table of 32 entries (Bays and Durham). `state` is the caller's word; the second stream's word,
// the table and the last result are shared by all callers. A word of 0 or below restarts them from its negation.
// Returns a number in the open interval (0, 1).
double uniformRandom(std::int32_t& state);
// The numbers of `count` calls, in less time.
void uniformRandom(std::int32_t& state, double* numbers, std::size_t count);

// Puts the shared words back to what they are at program start. For tests that look at streams.
void restoreInitialRandomState();

// Throw-away test values for checks of equations: a generator of its own, in the order of its calls.
double trialRandom();
// Its word back at program start. For tests.
void restoreInitialTrialState();

}  // namespace tarvex
