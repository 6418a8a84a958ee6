#include "sampling/SamplerSettings.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <limits>
#include <utility>

#include "factors/FactorList.h"
#include "sampling/FastSampler.h"
#include "sampling/FixedSampler.h"
#include "sampling/MethodOffer.h"
#include "sampling/MorrisSampler.h"
#include "sampling/RepLatinSampler.h"
#include "sampling/SamplerFactory.h"
#include "sampling/SobolSampler.h"

namespace tarvex {

namespace {

constexpr std::int64_t kMostRuns = std::numeric_limits<std::int32_t>::max();

// Passes the settings to one sampler; the first refusal stays as the message.
class Assignment {
 public:
  Assignment(const SamplerSettings& settings, const FactorList& factors, const SettingWords& words,
             std::string& message)
      : settings_(settings), factors_(factors), words_(words), message_(message) {}

  bool ok() const { return ok_; }
  void passCommon(Sampler& sampler);
  void pass(RepLatinSampler& sampler);
  void pass(MorrisSampler& sampler);
  void pass(FastSampler& sampler);
  void pass(SobolSampler& sampler);
  void pass(FixedSampler& sampler);

 private:
  bool refuse(std::string text);
  template <class Setter>
  void take(Setting setting, const std::optional<std::int64_t>& value, const Sampler& sampler, Setter set);
  void takeDesignSize(Sampler& sampler, std::int64_t runs);
  void takeElements(RepLatinSampler& sampler);
  void takeGroups(FastSampler& sampler);

  const SamplerSettings& settings_;
  const FactorList& factors_;
  const SettingWords& words_;
  std::string& message_;
  bool ok_ = true;
};

bool Assignment::refuse(std::string text) {
  if (ok_) message_ = std::move(text);
  return ok_ = false;
}

// Passes a given number to a setter that takes 32 bits; a refusal takes the sampler's text.
template <class Setter>
void Assignment::take(Setting setting, const std::optional<std::int64_t>& value, const Sampler& sampler, Setter set) {
  if (!ok_ || !value) return;
  const auto number = static_cast<std::int32_t>(std::clamp(*value, -kMostRuns, kMostRuns));
  if (number != *value)
    refuse("The value " + std::to_string(*value) + " of " + words_(setting) + " is out of range.");
  else if (!set(number))
    refuse(sampler.errorText);
}

// The number of runs of a design, which has to fit 32 bits.
void Assignment::takeDesignSize(Sampler& sampler, std::int64_t runs) {
  if (!ok_) return;
  if (runs > kMostRuns)
    refuse("The design would have " + std::to_string(runs) + " runs; at most " + std::to_string(kMostRuns) +
           " are possible.");
  else if (!sampler.setSamples(static_cast<std::int32_t>(runs)))
    refuse(sampler.errorText);
}

void Assignment::passCommon(Sampler& sampler) {
  take(Setting::Seed, settings_.seed, sampler, [&](std::int32_t seed) { return sampler.setSeed(seed); });
  take(Setting::Runs, settings_.runs, sampler, [&](std::int32_t runs) { return sampler.setSamples(runs); });
  sampler.setNumFactors(factors_.factorCount());
}

void Assignment::pass(RepLatinSampler& sampler) {
  const auto isPositive = [](const auto& value) { return !value || *value > 0; };
  if (!isPositive(settings_.baseDesign) || !isPositive(settings_.replications))
    refuse("Base design and replications must be positive values.");
  take(Setting::BaseDesign, settings_.baseDesign, sampler, [&](std::int32_t m) { return sampler.setBaseDesign(m); });
  take(Setting::Replications, settings_.replications, sampler, [&](std::int32_t r) {
    sampler.setReplications(r);
    return true;
  });
  takeElements(sampler);
  takeDesignSize(sampler, static_cast<std::int64_t>(sampler.baseDesign()) * sampler.replications());
}

void Assignment::takeElements(RepLatinSampler& sampler) {
  sampler.synchronise(factors_);
  sampler.setChoice(settings_.choice);
  for (std::int32_t i = 0; i < factors_.factorCount(); ++i) {
    const bool isChosen = std::ranges::find(settings_.chosen, factors_.factor(i).name) != settings_.chosen.end();
    if (ok_ && isChosen && sampler.elementFlag(i) == 0 && !sampler.setElementFlag(i, 1)) refuse(sampler.errorText);
  }
}

void Assignment::pass(MorrisSampler& sampler) {
  const auto count = [](std::int32_t value) { return static_cast<std::uint32_t>(std::max(value, 0)); };
  take(Setting::Levels, settings_.levels, sampler, [&](std::int32_t p) { return sampler.setLevels(count(p)); });
  take(Setting::Trajectories, settings_.trajectories, sampler,
       [&](std::int32_t r) { return sampler.setTrajectories(count(r)); });
  if (sampler.trajectories() > 0 && sampler.levels() == 0) refuse("Num level must be a positive value");
  takeDesignSize(sampler, MorrisSampler::runCount(sampler.trajectories(), factors_.correlatableCount()));
}

void Assignment::takeGroups(FastSampler& sampler) {
  for (const NamedGroup& group : settings_.groups) {
    if (sampler.groupSize(group.name) >= 0) refuse("The group '" + group.name + "' stands twice.");
    if (ok_ && !sampler.addGroup(group.name)) refuse(sampler.errorText);
    for (const std::string& factor : group.factors)
      if (ok_ && !sampler.addElement(group.name, factor)) refuse(sampler.errorText);
  }
  if (ok_ && !sampler.checkGroups(factors_)) refuse(sampler.errorText);
  const std::ptrdiff_t loose = factors_.correlatableCount() - std::ssize(sampler.elementNames());
  if (std::ssize(sampler.groupNames()) + loose < 2)
    refuse("The test on groups needs at least two groups, or a group and a factor in none.");
}

void Assignment::pass(FastSampler& sampler) {
  take(Setting::Mode, settings_.mode, sampler, [&](std::int32_t mode) { return sampler.setAnalysisMode(mode); });
  const std::int32_t count = factors_.correlatableCount();
  if (sampler.analysisMode() == FastSampler::kGroups)
    takeGroups(sampler);
  else if (!settings_.groups.empty())
    refuse("Groups belong to the mode groups.");
  if (sampler.analysisMode() == FastSampler::kClassic && count > FastSampler::kMaxClassicFactors)
    refuse("The classic test takes at most " + std::to_string(FastSampler::kMaxClassicFactors) +
           " factors; the list has " + std::to_string(count) + ". Extended and groups are possible.");
}

void Assignment::pass(SobolSampler& sampler) {
  const std::int32_t count = factors_.correlatableCount();
  const std::int32_t kind = settings_.order ? SobolSampler::kUpToOrder : SobolSampler::kFirstAndTotal;
  if (settings_.order && *settings_.order > count) refuse("  Incorrect order number, order too big.");
  if (settings_.cheap && !settings_.order) refuse("The cheap design needs " + words_(Setting::Order) + ".");
  take(Setting::BaseSize, settings_.baseSize, sampler, [&](std::int32_t b) { return sampler.setBaseSize(b); });
  take(Setting::Order, settings_.order, sampler, [&](std::int32_t order) { return sampler.setOrder(order); });
  if (!ok_ || !sampler.setDesignKind(kind)) return;
  takeDesignSize(sampler, sampler.baseSize() * SobolSampler::blockCount(count, sampler.order(), kind, settings_.cheap));
}

void Assignment::pass(FixedSampler& sampler) {
  if (!settings_.rows) {
    refuse("A fixed sample needs its rows: " + words_(Setting::Rows));
    return;
  }
  if (!sampler.setOrder(settings_.listing)) refuse("A sample is listed by run or by factor.");
  for (const std::vector<double>& row : *settings_.rows)
    if (ok_ && !sampler.addRow(row)) refuse(sampler.errorText);
}

}  // namespace

bool SamplerSettings::isGiven(Setting setting) const {
  switch (setting) {
    case Setting::Runs:
      return runs.has_value();
    case Setting::Seed:
      return seed.has_value();
    case Setting::BaseDesign:
      return baseDesign.has_value();
    case Setting::Replications:
      return replications.has_value();
    case Setting::Trajectories:
      return trajectories.has_value();
    case Setting::Levels:
      return levels.has_value();
    case Setting::Mode:
      return mode.has_value();
    case Setting::Groups:
      return !groups.empty();
    case Setting::BaseSize:
      return baseSize.has_value();
    case Setting::Order:
      return order.has_value();
    case Setting::Cheap:
      return cheap;
    case Setting::Rows:
      return rows.has_value();
  }
  return false;
}

std::string settingName(Setting setting) {
  constexpr std::array<const char*, 12> kNames{"number of executions",
                                               "seed",
                                               "base design",
                                               "number of replications",
                                               "number of trajectories",
                                               "levels",
                                               "mode",
                                               "groups",
                                               "base size",
                                               "order number",
                                               "cheap design",
                                               "rows"};
  return kNames[static_cast<std::size_t>(setting)];
}

const std::vector<Setting>& settingsOf(std::int32_t method) {
  using enum Setting;
  // clang-format off
  static const std::array<std::vector<Setting>, kMethodCount> kSettings{{
      {Runs, Seed, Mode, Groups},         // Fast
      {Rows},                             // Fixed samples
      {Runs, Seed},                       // Latin Hypercube
      {Runs},                             // QuasiRandom LpTau
      {Trajectories, Levels, Seed},       // Morris
      {Runs, Seed},                       // Random
      {BaseDesign, Replications, Seed},   // Replicated Latin Hypercube
      {BaseSize, Order, Cheap},           // Sobol
  }};
  // clang-format on
  static const std::vector<Setting> kNone;
  return method >= 0 && method < kMethodCount ? kSettings[static_cast<std::size_t>(method)] : kNone;
}

SamplerSettings settingsFrom(const Sampler& sampler) {
  SamplerSettings settings;
  settings.method = sampler.methodId;
  const std::vector<Setting>& taken = settingsOf(sampler.methodId);
  const auto takes = [&taken](Setting setting) {
    return std::find(taken.begin(), taken.end(), setting) != taken.end();
  };
  if (takes(Setting::Runs)) settings.runs = sampler.numSamples;
  if (takes(Setting::Seed)) settings.seed = sampler.seed;
  if (const auto* replicated = dynamic_cast<const RepLatinSampler*>(&sampler)) {
    settings.baseDesign = replicated->baseDesign();
    settings.replications = replicated->replications();
    settings.choice = replicated->choice();
    for (const RepElement& element : replicated->elements())
      if (element.flag > 0) settings.chosen.push_back(element.name);
  } else if (const auto* morris = dynamic_cast<const MorrisSampler*>(&sampler)) {
    settings.trajectories = morris->trajectories();
    settings.levels = morris->levels();
  } else if (const auto* fast = dynamic_cast<const FastSampler*>(&sampler)) {
    settings.mode = fast->analysisMode();
    for (const std::string& name : fast->groupNames()) settings.groups.push_back({name, {}});
    for (std::size_t i = 0; i < fast->elementNames().size(); ++i)
      settings.groups[static_cast<std::size_t>(fast->elementGroups()[i])].factors.push_back(fast->elementNames()[i]);
  } else if (const auto* sobol = dynamic_cast<const SobolSampler*>(&sampler)) {
    settings.baseSize = sobol->baseSize();
    if (sobol->designKind() == SobolSampler::kUpToOrder) settings.order = sobol->order();
  } else if (const auto* fixed = dynamic_cast<const FixedSampler*>(&sampler)) {
    settings.listing = fixed->values().order();
  }
  return settings;
}

std::int64_t designSize(const SamplerSettings& settings, std::int32_t stochasticCount) {
  const auto size = [](const std::optional<std::int64_t>& value) {
    return std::clamp<std::int64_t>(value.value_or(0), 0, kMostRuns);
  };
  switch (settings.method) {
    case kRepLatin:
      return size(settings.baseDesign) * size(settings.replications);
    case kMorris:
      return MorrisSampler::runCount(size(settings.trajectories), stochasticCount);
    case kSobol: {
      const auto kind = settings.order ? SobolSampler::kUpToOrder : SobolSampler::kFirstAndTotal;
      const auto order = settings.order ? static_cast<std::int32_t>(size(settings.order)) : 1;
      return size(settings.baseSize) * SobolSampler::blockCount(stochasticCount, order, kind, settings.cheap);
    }
    case kFixed:
      return settings.rows ? std::ssize(*settings.rows) : 0;
    default:
      return size(settings.runs);
  }
}

std::unique_ptr<Sampler> makeSampler(const SamplerSettings& settings, const FactorList& factors, std::string& message,
                                     const SettingWords& words) {
  message = whyNotOffered(settings.method, factors);
  if (!message.empty()) return nullptr;
  const std::vector<Setting>& taken = settingsOf(settings.method);
  for (int i = 0; i <= static_cast<int>(Setting::Rows); ++i) {
    const auto setting = static_cast<Setting>(i);
    if (!settings.isGiven(setting) || std::find(taken.begin(), taken.end(), setting) != taken.end()) continue;
    message = "The method " + std::string(methodNameOf(settings.method)) + " has no setting " + words(setting) + ".";
    return nullptr;
  }
  std::unique_ptr<Sampler> sampler = makeSampler(settings.method);
  Assignment assignment(settings, factors, words, message);
  assignment.passCommon(*sampler);
  if (auto* replicated = dynamic_cast<RepLatinSampler*>(sampler.get()))
    assignment.pass(*replicated);
  else if (auto* morris = dynamic_cast<MorrisSampler*>(sampler.get()))
    assignment.pass(*morris);
  else if (auto* fast = dynamic_cast<FastSampler*>(sampler.get()))
    assignment.pass(*fast);
  else if (auto* sobol = dynamic_cast<SobolSampler*>(sampler.get()))
    assignment.pass(*sobol);
  else if (auto* fixed = dynamic_cast<FixedSampler*>(sampler.get()))
    assignment.pass(*fixed);
  return assignment.ok() ? std::move(sampler) : nullptr;
}

}  // namespace tarvex
