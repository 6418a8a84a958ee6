#include "parts/PartSettings.h"

#include <charconv>
#include <string_view>

namespace tarvex {

namespace {

constexpr std::int32_t kMostRepeats = 1000;

}  // namespace

std::string engineWord(EngineKind engine) {
  return engine == EngineKind::Slurm ? "slurm" : "local";
}

bool parseEngine(const std::string& word, EngineKind& engine) {
  if (word != "slurm" && word != "local") return false;
  engine = word == "slurm" ? EngineKind::Slurm : EngineKind::Local;
  return true;
}

std::string policyWord(const PartSettings& settings) {
  if (settings.policy == FailurePolicy::Stop) return "stop";
  return (settings.policy == FailurePolicy::Retry ? "retry:" : "nan:") + std::to_string(settings.repeats);
}

bool parsePolicy(const std::string& word, PartSettings& settings) {
  if (word == "stop") {
    settings.policy = FailurePolicy::Stop;
    settings.repeats = 0;
    return true;
  }
  const bool repeats = word.starts_with("retry:");
  if (!repeats && !word.starts_with("nan:")) return false;
  const std::string_view number = std::string_view(word).substr(word.find(':') + 1);
  std::int32_t count = 0;
  const auto parsed = std::from_chars(number.data(), number.data() + number.size(), count);
  if (parsed.ec != std::errc() || parsed.ptr != number.data() + number.size() || count < 0 || count > kMostRepeats)
    return false;
  settings.policy = repeats ? FailurePolicy::Retry : FailurePolicy::Missing;
  settings.repeats = count;
  return true;
}

}  // namespace tarvex
