#pragma once

#include <string>

#include "postproc/Quantiles.h"

namespace tarvex {

class PrepConfiguration;
class VelsConfiguration;

// What is said of a file of results, and of a directory of them, that can't be written.
inline constexpr const char* kCannotSave = "I cannot save the file";

// All numbers of an analysis with full precision, infinities as "inf" and "-inf". False, with a message, when the file
// can't be written.
//
// CSV: a number a line under the columns block, variable, item, quantity, value, remark. What is no number is "nan";
// what was not computed has no value and the reason for a remark.
[[nodiscard]] bool exportCsv(const VelsConfiguration& vels, const std::string& path, std::string& message,
                             const QuantileTable& quantiles = {});
// JSON: the same by variable, with what was sampled. What is no number or was not computed is null; the reasons stand
// under "not computed", by quantity, and how intervals were made under "intervals".
[[nodiscard]] bool exportJson(const PrepConfiguration& prep, const VelsConfiguration& vels, const std::string& path,
                              std::string& message, const QuantileTable& quantiles = {});

}  // namespace tarvex
