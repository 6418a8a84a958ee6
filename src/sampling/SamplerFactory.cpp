#include "sampling/SamplerFactory.h"

#include <array>

#include "base/TextReader.h"
#include "sampling/FastSampler.h"
#include "sampling/FixedSampler.h"
#include "sampling/LatinSampler.h"
#include "sampling/LpTauSampler.h"
#include "sampling/MorrisSampler.h"
#include "sampling/RandomSampler.h"
#include "sampling/RepLatinSampler.h"
#include "sampling/Sampler.h"
#include "sampling/SobolSampler.h"

namespace tarvex {

namespace {

struct Method {
  std::string_view name;
  std::unique_ptr<Sampler> (*make)();
};

template <class AnySampler>
std::unique_ptr<Sampler> make() {
  return std::make_unique<AnySampler>();
}

// By method number.
// clang-format off
constexpr std::array<Method, kMethodCount> kMethods{{
    {"Fast",                       make<FastSampler>},
    {"Fixed samples",              make<FixedSampler>},
    {"Latin Hypercube",            make<LatinSampler>},
    {"QuasiRandom LpTau",          make<LpTauSampler>},
    {"Morris",                     make<MorrisSampler>},
    {"Random",                     make<RandomSampler>},
    {"Replicated Latin Hypercube", make<RepLatinSampler>},
    {"Sobol",                      make<SobolSampler>},
}};
// clang-format on

constexpr std::size_t kMaxMethodName = 100;

bool isMethod(std::int32_t methodId) {
  return methodId >= 0 && methodId < kMethodCount;
}

}  // namespace

std::string_view methodNameOf(std::int32_t methodId) {
  return isMethod(methodId) ? kMethods[static_cast<std::size_t>(methodId)].name : std::string_view();
}

std::unique_ptr<Sampler> makeSampler(std::int32_t methodId) {
  return isMethod(methodId) ? kMethods[static_cast<std::size_t>(methodId)].make() : nullptr;
}

std::unique_ptr<Sampler> readSampler(TextReader& in) {
  std::int32_t methodId = -1;
  in.expect("the number of the sampling method") >> methodId;
  if (in.fail()) return nullptr;
  std::unique_ptr<Sampler> sampler = makeSampler(methodId);
  if (!sampler) {
    in.refuse("the number of the sampling method must be from 0 to " + std::to_string(kMethodCount - 1) + ", not " +
              std::to_string(methodId));
    return nullptr;
  }
  in.skipLine();
  if (!in.expect("the name of the sampling method").readLine(sampler->methodName, kMaxMethodName)) return nullptr;
  sampler->readSection(in);
  return in.ok() ? std::move(sampler) : nullptr;
}

}  // namespace tarvex
