#include "batch/SamplerOptions.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "batch/CommandLine.h"
#include "factors/FactorList.h"
#include "sampling/FastSampler.h"
#include "sampling/RowsFile.h"
#include "sampling/SamplerFactory.h"
#include "sampling/SamplerSettings.h"

namespace tarvex {

namespace {

struct Word {
  std::string_view word;
  std::int32_t number;
};

// clang-format off
constexpr std::array<Word, kMethodCount> kMethods{{
    {"random",           kRandom},
    {"latin",            kLatin},
    {"replicated-latin", kRepLatin},
    {"lptau",            kLpTau},
    {"morris",           kMorris},
    {"fast",             kFast},
    {"sobol",            kSobol},
    {"fixed",            kFixed},
}};

constexpr std::array<Word, 3> kModes{{
    {"classic",  FastSampler::kClassic},
    {"extended", FastSampler::kExtended},
    {"groups",   FastSampler::kGroups},
}};
// clang-format on

// The number of a word; the command line lets none through but these.
template <std::size_t kCount>
std::int32_t numberOf(const std::array<Word, kCount>& words, std::string_view word) {
  return std::find_if(words.begin(), words.end(), [word](const Word& w) { return w.word == word; })->number;
}

std::string optionOf(Setting setting) {
  switch (setting) {
    case Setting::Runs:
      return "--runs";
    case Setting::Seed:
      return "--seed";
    case Setting::BaseDesign:
      return "--base-design";
    case Setting::Replications:
      return "--replications";
    case Setting::Trajectories:
      return "--trajectories";
    case Setting::Levels:
      return "--levels";
    case Setting::Mode:
      return "--mode";
    case Setting::Groups:
      return "--group";
    case Setting::BaseSize:
      return "--base-size";
    case Setting::Order:
      return "--order";
    case Setting::Cheap:
      return "--cheap";
    case Setting::Rows:
      return "--rows";
  }
  return {};
}

// NAME=a,b,c
bool readGroup(const std::string& text, NamedGroup& group, std::string& message) {
  const std::size_t equals = text.find('=');
  if (equals == std::string::npos || equals == 0) {
    message = fmt::format("'{}' is not a group of the form NAME=a,b,c.", text);
    return false;
  }
  group.name = text.substr(0, equals);
  for (std::size_t start = equals + 1; start <= text.size();) {
    const std::size_t comma = std::min(text.find(',', start), text.size());
    if (comma > start) group.factors.push_back(text.substr(start, comma - start));
    start = comma + 1;
  }
  return true;
}

// All settings but those that have to be read.
SamplerSettings plainSettings(const SampleOptions& options) {
  SamplerSettings settings = options.settings;
  settings.method = numberOf(kMethods, options.method);
  if (options.mode) settings.mode = numberOf(kModes, *options.mode);
  return settings;
}

bool takes(std::int32_t method, Setting setting) {
  const std::vector<Setting>& taken = settingsOf(method);
  return std::find(taken.begin(), taken.end(), setting) != taken.end();
}

}  // namespace

std::string missingSize(const SampleOptions& options) {
  const SamplerSettings settings = plainSettings(options);
  for (const Setting size : {Setting::Runs, Setting::BaseDesign, Setting::Replications, Setting::Trajectories,
                             Setting::Levels, Setting::BaseSize, Setting::Rows}) {
    const bool isGiven = size == Setting::Rows ? options.rowsFile.has_value() : settings.isGiven(size);
    if (!isGiven && takes(settings.method, size)) return optionOf(size);
  }
  return {};
}

bool takesSeed(std::int32_t methodId) {
  return takes(methodId, Setting::Seed);
}

std::unique_ptr<Sampler> makeSampler(const SampleOptions& options, const FactorList& factors, std::string& message) {
  SamplerSettings settings = plainSettings(options);
  for (const std::string& text : options.groups)
    if (!readGroup(text, settings.groups.emplace_back(), message)) return nullptr;
  if (options.rowsFile && !readRowsFile(*options.rowsFile, factors, settings.rows.emplace(), message)) return nullptr;
  return makeSampler(settings, factors, message, optionOf);
}

}  // namespace tarvex
