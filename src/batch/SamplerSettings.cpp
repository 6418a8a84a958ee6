#include "batch/SamplerSettings.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <string_view>

#include "batch/CommandLine.h"
#include "batch/RowsFile.h"
#include "factors/FactorList.h"
#include "sampling/FastSampler.h"
#include "sampling/FixedSampler.h"
#include "sampling/MorrisSampler.h"
#include "sampling/RepLatinSampler.h"
#include "sampling/SobolSampler.h"

namespace tarvex {

namespace {

struct MethodWord {
  std::string_view word;
  MethodId id;
  std::string_view settings;  // the options that the method takes, each between blanks
};

// clang-format off
constexpr std::array<MethodWord, kMethodCount> kMethods = {{
    {"random",           kRandom,   " --runs --seed "},
    {"latin",            kLatin,    " --runs --seed "},
    {"replicated-latin", kRepLatin, " --seed --base-design --replications "},
    {"lptau",            kLpTau,    " --runs "},
    {"morris",           kMorris,   " --seed --trajectories --levels "},
    {"fast",             kFast,     " --runs --seed --mode --group "},
    {"sobol",            kSobol,    " --base-size --order --cheap "},
    {"fixed",            kFixed,    " --rows "},
}};
// clang-format on

const MethodWord& methodOf(const std::string& word) {
  return *std::find_if(kMethods.begin(), kMethods.end(), [&word](const MethodWord& m) { return m.word == word; });
}

// The first option that was given and that the method doesn't take; empty when there is none.
std::string foreignSetting(const SampleOptions& o, const MethodWord& method) {
  const std::pair<std::string_view, bool> given[] = {
      {"--runs", o.runs.has_value()},
      {"--seed", o.seed.has_value()},
      {"--base-design", o.baseDesign.has_value()},
      {"--replications", o.replications.has_value()},
      {"--trajectories", o.trajectories.has_value()},
      {"--levels", o.levels.has_value()},
      {"--mode", o.mode.has_value()},
      {"--group", !o.groups.empty()},
      {"--base-size", o.baseSize.has_value()},
      {"--order", o.order.has_value()},
      {"--cheap", o.cheap},
      {"--rows", o.rowsFile.has_value()},
  };
  for (const auto& [option, isGiven] : given)
    if (isGiven && method.settings.find(fmt::format(" {} ", option)) == std::string_view::npos)
      return std::string(option);
  return {};
}

// Collects the settings of one sampler; the first refusal stays as the message.
class Settings {
 public:
  explicit Settings(std::string& message) : message_(message) {}

  bool ok() const { return ok_; }
  bool refuse(std::string text) {
    if (ok_) message_ = std::move(text);
    return ok_ = false;
  }

  // Passes a given number to a setter that takes 32 bits; a refusal takes the sampler's text.
  template <class Setter>
  bool take(const char* option, const std::optional<std::int64_t>& value, const Sampler& sampler, Setter set) {
    if (!ok_ || !value) return ok_;
    if (*value < std::numeric_limits<std::int32_t>::min() || *value > std::numeric_limits<std::int32_t>::max())
      return refuse(fmt::format("The value {} of {} is out of range.", *value, option));
    if (set(static_cast<std::int32_t>(*value))) return true;
    return refuse(sampler.errorText == "No errors" ? fmt::format("The value {} of {} is refused.", *value, option)
                                                   : sampler.errorText);
  }

  // The number of runs of a design, which has to fit 32 bits.
  bool takeDesignSize(Sampler& sampler, std::int64_t runs) {
    if (!ok_) return false;
    if (runs > std::numeric_limits<std::int32_t>::max())
      return refuse(fmt::format("The design would have {} runs; at most 2147483647 are possible.", runs));
    return sampler.setSamples(static_cast<std::int32_t>(runs)) || refuse(sampler.errorText);
  }

 private:
  std::string& message_;
  bool ok_ = true;
};

void configure(RepLatinSampler& sampler, const SampleOptions& options, const FactorList& factors, Settings& settings) {
  const auto positive = [](const auto& value) { return !value || *value > 0; };
  if (!positive(options.baseDesign) || !positive(options.replications)) {
    settings.refuse("Base design and replications must be positive values.");
    return;
  }
  settings.take("--base-design", options.baseDesign, sampler, [&](std::int32_t m) {
    sampler.setBaseDesign(m);
    return true;
  });
  settings.take("--replications", options.replications, sampler, [&](std::int32_t r) {
    sampler.setReplications(r);
    return true;
  });
  sampler.synchronise(factors);
  settings.takeDesignSize(sampler, static_cast<std::int64_t>(sampler.baseDesign()) * sampler.replications());
}

void configure(MorrisSampler& sampler, const SampleOptions& options, const FactorList& factors, Settings& settings) {
  const auto count = [](std::int32_t value) { return static_cast<std::uint32_t>(std::max(value, 0)); };
  settings.take("--levels", options.levels, sampler, [&](std::int32_t p) { return sampler.setLevels(count(p)); });
  settings.take("--trajectories", options.trajectories, sampler,
                [&](std::int32_t r) { return sampler.setTrajectories(count(r)); });
  if (!settings.ok()) return;
  if (sampler.trajectories() > 0 && sampler.levels() == 0) settings.refuse("Num level must be a positive value");
  settings.takeDesignSize(sampler, MorrisSampler::runCount(sampler.trajectories(), factors.correlatableCount()));
}

// NAME=a,b,c
bool addGroup(FastSampler& sampler, const std::string& group, Settings& settings) {
  const std::size_t equals = group.find('=');
  if (equals == std::string::npos || equals == 0)
    return settings.refuse(fmt::format("'{}' is not a group of the form NAME=a,b,c.", group));
  const std::string name = group.substr(0, equals);
  if (sampler.groupSize(name) >= 0) return settings.refuse(fmt::format("The group '{}' stands twice.", name));
  sampler.addGroup(name);
  for (std::size_t start = equals + 1; start <= group.size() && start > equals;) {
    const std::size_t comma = std::min(group.find(',', start), group.size());
    if (comma > start) sampler.addElement(name, group.substr(start, comma - start));
    start = comma + 1;
  }
  return true;
}

void configure(FastSampler& sampler, const SampleOptions& options, const FactorList& factors, Settings& settings) {
  const std::string mode = options.mode.value_or("classic");
  const std::int32_t analysisMode = mode == "classic"    ? FastSampler::kClassic
                                    : mode == "extended" ? FastSampler::kExtended
                                                         : FastSampler::kGroups;
  if (!sampler.setAnalysisMode(analysisMode)) settings.refuse(sampler.errorText);
  if (analysisMode != FastSampler::kGroups && !options.groups.empty())
    settings.refuse("Groups belong to the mode groups.");
  for (const std::string& group : options.groups)
    if (!addGroup(sampler, group, settings)) return;
  if (settings.ok() && analysisMode == FastSampler::kGroups && !sampler.checkGroups(factors))
    settings.refuse(sampler.errorText);
  if (settings.ok() && analysisMode == FastSampler::kClassic &&
      factors.correlatableCount() > FastSampler::kMaxClassicFactors)
    settings.refuse(
        fmt::format("The classic test takes at most {} factors; the list has {}. Extended and groups are "
                    "possible.",
                    FastSampler::kMaxClassicFactors, factors.correlatableCount()));
}

void configure(SobolSampler& sampler, const SampleOptions& options, const FactorList& factors, Settings& settings) {
  const std::int32_t count = factors.correlatableCount();
  const std::int32_t kind = options.order ? SobolSampler::kUpToOrder : SobolSampler::kFirstAndTotal;
  if (options.order && *options.order > count) settings.refuse("  Incorrect order number, order too big.");
  if (options.cheap && !options.order) settings.refuse("The cheap design needs --order.");
  settings.take("--base-size", options.baseSize, sampler, [&](std::int32_t b) { return sampler.setBaseSize(b); });
  settings.take("--order", options.order, sampler, [&](std::int32_t order) { return sampler.setOrder(order); });
  if (!settings.ok() || !sampler.setDesignKind(kind)) return;
  settings.takeDesignSize(sampler,
                          sampler.baseSize() * SobolSampler::blockCount(count, sampler.order(), kind, options.cheap));
}

void configure(FixedSampler& sampler, const SampleOptions& options, const FactorList& factors, Settings& settings) {
  if (!options.rowsFile) {
    settings.refuse("A fixed sample needs its rows: --rows FILE.csv");
    return;
  }
  std::vector<std::vector<double>> rows;
  std::string message;
  if (!readRowsFile(*options.rowsFile, factors, rows, message)) {
    settings.refuse(message);
    return;
  }
  sampler.setNumFactors(factors.factorCount());
  sampler.setOrder(options.byFactor ? 1 : 0);
  for (const auto& row : rows)
    if (!sampler.addRow(row)) {
      settings.refuse(sampler.values().errorText());
      return;
    }
  settings.takeDesignSize(sampler, sampler.values().rows());
}

}  // namespace

std::unique_ptr<Sampler> makeConfiguredSampler(const SampleOptions& options, const FactorList& factors,
                                               std::string& message) {
  const MethodWord& method = methodOf(options.method);
  if (const std::string foreign = foreignSetting(options, method); !foreign.empty()) {
    message = fmt::format("The method {} has no setting {}.", method.word, foreign);
    return nullptr;
  }
  if (!isMethodOffered(method.id, factors, &message)) return nullptr;

  std::unique_ptr<Sampler> sampler = makeSampler(method.id);
  Settings settings(message);
  settings.take("--seed", options.seed, *sampler, [&](std::int32_t seed) { return sampler->setSeed(seed); });
  settings.take("--runs", options.runs, *sampler, [&](std::int32_t runs) { return sampler->setSamples(runs); });
  if (!settings.ok()) return nullptr;
  if (auto* replicated = dynamic_cast<RepLatinSampler*>(sampler.get()))
    configure(*replicated, options, factors, settings);
  else if (auto* morris = dynamic_cast<MorrisSampler*>(sampler.get()))
    configure(*morris, options, factors, settings);
  else if (auto* fast = dynamic_cast<FastSampler*>(sampler.get()))
    configure(*fast, options, factors, settings);
  else if (auto* sobol = dynamic_cast<SobolSampler*>(sampler.get()))
    configure(*sobol, options, factors, settings);
  else if (auto* fixed = dynamic_cast<FixedSampler*>(sampler.get()))
    configure(*fixed, options, factors, settings);
  return settings.ok() ? std::move(sampler) : nullptr;
}

}  // namespace tarvex
