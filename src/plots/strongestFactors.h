#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tarvex {

class SensitivityStats;
struct RunColumn;
struct RunTable;

// Up to `count` factors of the table, by column, that act most on an output: those of the largest measure of any kind,
// then those without a measure by the size of their rank correlation; constants never. `stats` may be null.
std::vector<std::size_t> strongestFactors(const RunTable& table, const RunColumn& output, const SensitivityStats* stats,
                                          std::int32_t variable, std::size_t count);

}  // namespace tarvex
