#include "postproc/TimedVariables.h"

#include <algorithm>

#include "postproc/OutputReference.h"

namespace tarvex {

namespace {

std::optional<OutputReference> referenceOf(const std::string& variable, const std::vector<std::string>& outputNames) {
  OutputReference reference;
  std::size_t position = 0;
  const auto parsed = OutputReference::parse(variable, outputNames, position, reference);
  if (parsed != OutputReference::Parsed::kReference || position != variable.size()) return std::nullopt;
  return reference;
}

}  // namespace

std::optional<std::size_t> outputOfVariable(const std::string& variable, const std::vector<std::string>& outputNames) {
  const auto reference = referenceOf(variable, outputNames);
  return reference ? std::optional(static_cast<std::size_t>(reference->output())) : std::nullopt;
}

std::optional<double> timeOfVariable(const std::string& variable, const std::vector<std::string>& outputNames) {
  const auto reference = referenceOf(variable, outputNames);
  return reference && reference->kind() == OutputReference::kAtTime ? std::optional(reference->time()) : std::nullopt;
}

std::vector<TimedVariables> timedVariables(const std::vector<std::string>& variables,
                                           const std::vector<std::string>& outputNames) {
  std::vector<TimedVariables> timed(outputNames.size());
  for (std::size_t v = 0; v < variables.size(); ++v) {
    const auto reference = referenceOf(variables[v], outputNames);
    if (!reference || reference->kind() != OutputReference::kAtTime) continue;
    timed[static_cast<std::size_t>(reference->output())].at.emplace_back(reference->time(),
                                                                         static_cast<std::int32_t>(v));
  }
  for (std::size_t i = 0; i < timed.size(); ++i) {
    timed[i].output = outputNames[i];
    std::ranges::stable_sort(timed[i].at, {}, &std::pair<double, std::int32_t>::first);
  }
  std::erase_if(timed, [](const TimedVariables& variable) { return variable.at.size() < 2; });
  return timed;
}

}  // namespace tarvex
