#pragma once

#include <time.h>

#include <cstdint>
#include <string>

#include "factors/FactorList.h"
#include "sampling/PrepConfiguration.h"

namespace tarvex::bench {

// Ends the program with the text on a failure: a benchmark of something that failed would be a number without a
// meaning.
void require(bool good, const std::string& what);
// What one of the system's clocks shows.
double millisecondsOf(clockid_t clock);

// `count` factors of the usual kinds, in turn, named x1, x2, ..., without correlation.
FactorList mixedFactors(std::int32_t count);

// Two uniform, two normal, two lognormal and two Weibull factors, a beta(2.5, 3.5) and a triangular one. `ranked`: each
// with a rank correlation of 0.5 to the next.
FactorList tenFactors(bool ranked);
// Seven uniform and five loguniform ones.
FactorList twelveFactors();

// A configuration ready for a generation of `runs` runs, or of as many fewer as the method's blocks allow. The extended
// form of FAST, first and total order of Sobol, 10 replicates with rank correlation.
PrepConfiguration preparedConfiguration(std::int32_t methodId, std::int32_t factors, std::int32_t runs);
PrepConfiguration preparedConfiguration(std::int32_t methodId, FactorList factors, std::int32_t runs);

// Fills the store of `columns` columns with uniform numbers.
sampValues filledStore(std::int32_t rows, std::int32_t columns);

}  // namespace tarvex::bench
