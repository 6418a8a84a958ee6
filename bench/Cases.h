#pragma once

#include <cstdint>

#include "factors/FactorList.h"
#include "sampling/PrepConfiguration.h"

namespace tarvex::bench {

// `count` factors of the usual kinds, in turn, named x1, x2, ..., without correlation.
FactorList mixedFactors(std::int32_t count);

// A configuration ready for a generation of `runs` runs, or of as many fewer as the method's blocks allow. The extended
// form of FAST, first and total order of Sobol, 10 replicates with rank correlation.
PrepConfiguration preparedConfiguration(std::int32_t methodId, std::int32_t factors, std::int32_t runs);

// Fills the store of `columns` columns with uniform numbers.
sampValues filledStore(std::int32_t rows, std::int32_t columns);

}  // namespace tarvex::bench
