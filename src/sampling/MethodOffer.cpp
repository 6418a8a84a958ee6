#include "sampling/MethodOffer.h"

#include <array>

#include "factors/FactorList.h"
#include "sampling/LpTauDirections.h"
#include "sampling/SamplerFactory.h"

namespace tarvex {

namespace {

constexpr std::int32_t kAnyCount = 0x7fffffff;

constexpr unsigned modes(std::initializer_list<CorrelationMode> accepted) {
  unsigned bits = 0;
  for (const CorrelationMode mode : accepted) bits |= 1u << mode;
  return bits;
}

struct Offer {
  MethodId method;
  unsigned modes;
  std::int32_t leastFactors;  // correlatable ones
  std::int32_t mostFactors;
};

constexpr unsigned kAllModes = modes({kDependenceTree, kImanConover, kNoCorrelation, kSteinSample});
constexpr unsigned kAllButStein = modes({kDependenceTree, kImanConover, kNoCorrelation});
constexpr unsigned kByRanks = modes({kImanConover, kSteinSample});
constexpr unsigned kUncorrelated = modes({kNoCorrelation});

// In the order in which panels list the methods.
// clang-format off
constexpr std::array<Offer, kMethodCount> kOffers{{
    {kRandom,   kAllButStein,  1, kAnyCount},
    {kLatin,    kAllModes,     1, kAnyCount},
    {kRepLatin, kByRanks,      2, kAnyCount},
    {kFixed,    kAllButStein,  1, kAnyCount},
    {kMorris,   kUncorrelated, 1, kAnyCount},
    {kFast,     kUncorrelated, 2, kAnyCount},
    {kLpTau,    kUncorrelated, 1, kLpTauDimensions},
    {kSobol,    kUncorrelated, 2, kLpTauDimensions},
}};

constexpr std::array<const char*, 4> kCorrelationTexts{
    "with a dependence tree", "with a rank correlation matrix", "without correlation", "with a Stein sample"};
// clang-format on

bool acceptsMode(const Offer& offer, std::int32_t mode) {
  return (offer.modes >> (mode & 31) & 1u) != 0;
}

bool accepts(const Offer& offer, const FactorList& factors) {
  const std::int32_t count = factors.correlatableCount();
  return acceptsMode(offer, factors.correlationMode) && count >= offer.leastFactors && count <= offer.mostFactors;
}

const Offer* offerOf(std::int32_t methodId) {
  for (const Offer& offer : kOffers)
    if (offer.method == methodId) return &offer;
  return nullptr;
}

std::string refusal(const Offer& offer, const FactorList& factors) {
  const std::int32_t mode = factors.correlationMode;
  std::string text(methodNameOf(offer.method));
  if (!acceptsMode(offer, mode)) {
    text += " can't be used ";
    text += mode >= 0 && mode < 4 ? kCorrelationTexts[static_cast<std::size_t>(mode)] : "with this correlation";
  } else if (factors.correlatableCount() < offer.leastFactors) {
    text += " needs at least " + std::to_string(offer.leastFactors) + " factors that are sampled";
  } else {
    text += " takes at most " + std::to_string(offer.mostFactors) + " factors that are sampled";
  }
  return text;
}

std::string offeredNames(const FactorList& factors) {
  std::string names;
  for (const Offer& offer : kOffers)
    if (accepts(offer, factors)) {
      if (!names.empty()) names += ", ";
      names += methodNameOf(offer.method);
    }
  return names;
}

}  // namespace

std::vector<std::int32_t> methodsInOrder() {
  std::vector<std::int32_t> methods;
  for (const Offer& offer : kOffers) methods.push_back(offer.method);
  return methods;
}

std::string whyNotOffered(std::int32_t methodId, const FactorList& factors) {
  const Offer* offer = offerOf(methodId);
  if (offer && accepts(*offer, factors)) return {};
  if (factors.correlatableCount() == 0) return "There is nothing to sample: every factor is a constant or a relation.";
  const std::string names = offeredNames(factors);
  return (offer ? refusal(*offer, factors) : "There is no such method") +
         (names.empty() ? "." : ". On offer for these factors: " + names + ".");
}

}  // namespace tarvex
