#include "postproc/TimedVariables.h"

#include <algorithm>

#include "postproc/OutputReference.h"

namespace tarvex {

std::vector<TimedVariables> timedVariables(const std::vector<std::string>& variables,
                                           const std::vector<std::string>& outputNames) {
  std::vector<TimedVariables> timed(outputNames.size());
  for (std::size_t v = 0; v < variables.size(); ++v) {
    OutputReference reference;
    std::size_t position = 0;
    const auto parsed = OutputReference::parse(variables[v], outputNames, position, reference);
    if (parsed != OutputReference::Parsed::kReference || position != variables[v].size() ||
        reference.kind() != OutputReference::kAtTime)
      continue;
    timed[static_cast<std::size_t>(reference.output())].at.emplace_back(reference.time(), static_cast<std::int32_t>(v));
  }
  for (std::size_t i = 0; i < timed.size(); ++i) {
    timed[i].output = outputNames[i];
    std::ranges::stable_sort(timed[i].at, {}, &std::pair<double, std::int32_t>::first);
  }
  std::erase_if(timed, [](const TimedVariables& variable) { return variable.at.size() < 2; });
  return timed;
}

}  // namespace tarvex
