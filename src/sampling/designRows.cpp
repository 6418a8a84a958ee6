#include "sampling/designRows.h"

#include "factors/Constant.h"
#include "factors/FactorList.h"

namespace tarvex {

std::vector<std::int32_t> stochasticFactors(const FactorList& factors) {
  std::vector<std::int32_t> indices;
  for (std::int32_t i = 0; i < factors.factorCount(); ++i)
    if (factors.factor(i).isStochastic()) indices.push_back(i);
  return indices;
}

std::vector<double> constantRow(const FactorList& factors) {
  std::vector<double> row(static_cast<std::size_t>(factors.factorCount()), 0.0);
  for (std::int32_t i = 0; i < factors.factorCount(); ++i)
    if (const auto* constant = dynamic_cast<const Constant*>(&factors.factor(i)))
      row[static_cast<std::size_t>(i)] = constant->value();
  return row;
}

std::string pointFailure(std::int32_t run) {
  // Kept: the percent sign behind the number stands in the text that users know.
  return "Sample number " + std::to_string(std::int64_t{run} + 1) + "%: generation failed";
}

}  // namespace tarvex
