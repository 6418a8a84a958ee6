#include "sampling/designFacts.h"

#include <bit>

#include "factors/FactorList.h"
#include "sampling/FastSampler.h"
#include "sampling/LpTauDirections.h"
#include "sampling/MorrisSampler.h"
#include "sampling/RankOrdering.h"
#include "sampling/RepLatinSampler.h"
#include "sampling/SobolSampler.h"

namespace tarvex {

namespace {

using Texts = std::vector<std::string>;

constexpr std::int32_t kMostNames = 5;  // that a sentence lists

bool isPowerOfTwo(std::int32_t count) {
  return count > 0 && std::has_single_bit(static_cast<std::uint32_t>(count));
}

std::string resultsOf(const Sampler& sampler) {
  if (const auto* fast = dynamic_cast<const FastSampler*>(&sampler))
    return fast->analysisMode() == FastSampler::kClassic    ? "first order indices; interactions aren't seen"
           : fast->analysisMode() == FastSampler::kExtended ? "first and total order indices of each factor"
                                                            : "first and total order indices of each group and of each "
                                                              "factor in none";
  if (const auto* sobol = dynamic_cast<const SobolSampler*>(&sampler))
    return sobol->designKind() == SobolSampler::kFirstAndTotal
               ? "first and total order indices"
               : "indices of every set of up to " + std::to_string(sobol->order()) + " factors, and total order";
  switch (sampler.methodId) {
    case kMorris:
      return "Morris index and Sigma of each factor";
    case kRepLatin:
      return "importance measures, for correlated factors too";
    default:
      return "uncertainty statistics, regression and rank measures, Smirnov test";
  }
}

// Factors that hang on another one keep their correlation, not their strata.
void addUnstratified(const FactorList& factors, Texts& cautions) {
  if (factors.correlationMode != kDependenceTree) return;
  std::string names;
  std::int32_t count = 0;
  for (std::int32_t i = 0; i < factors.factorCount(); ++i) {
    if (factors.parentOf(i) < 0) continue;
    if (++count <= kMostNames) names += (count > 1 ? ", " : "") + factors.factor(i).name;
  }
  if (count > kMostNames) names += ", ...";
  if (count > 0) cautions.push_back("Not stratified, as they follow others in the dependence tree: " + names + '.');
}

void addRegression(const Sampler& sampler, const FactorList& factors, Texts& cautions) {
  const std::int64_t least = std::int64_t{factors.correlatableCount()} + 2;
  if (sampler.numSamples > 0 && sampler.numSamples < least)
    cautions.push_back("Regression over these factors needs at least " + std::to_string(least) + " runs.");
}

// What the correlation in force can't give.
void addCorrelation(const Sampler& sampler, const FactorList& factors, Texts& cautions) {
  if (const std::string refusal = matrixRefusal(factors); !refusal.empty()) cautions.push_back(refusal);
  if (factors.correlationMode == kSteinSample && sampler.numSamples > factors.steinInfo.rows())
    cautions.emplace_back("The Stein sample has fewer rows than the sample to generate.");
}

void addSequence(std::int32_t points, std::int64_t dimensions, Texts& cautions) {
  if (dimensions > kLpTauDimensions)
    cautions.push_back("The sequence has " + std::to_string(kLpTauDimensions) + " dimensions; this design takes " +
                       std::to_string(dimensions) + " and can't be generated.");
  if (!isPowerOfTwo(points))
    cautions.push_back(std::to_string(points) + " points of the sequence aren't balanced: take a power of 2.");
}

void addMorris(const MorrisSampler& sampler, Texts& cautions) {
  const std::uint32_t levels = sampler.levels();
  const std::uint32_t jump = levels / 2;
  if (jump == 0) {
    cautions.emplace_back("With fewer than two levels no factor moves.");
    return;
  }
  const std::string part = levels % 2 == 0 ? "half" : std::to_string(jump) + '/' + std::to_string(levels);
  cautions.push_back("Each step goes " + part +
                     " of a factor's range: a model that repeats itself after that much shows no effect.");
  if (levels % 2 != 0) cautions.emplace_back("Of an odd number of levels the uppermost is never visited.");
}

// Kept: the check of the sample size counts, for three factors, with less than the highest frequency.
void addClassic(const FastSampler& sampler, std::int32_t count, Texts& cautions) {
  constexpr std::int32_t kRunsPerFrequency = 8;
  const std::vector<std::int32_t> frequencies = classicFrequencies(count);
  if (frequencies.empty()) return;
  const std::int32_t enough = kRunsPerFrequency * frequencies.back() + 1;
  if (sampler.numSamples < enough)
    cautions.push_back("Below " + std::to_string(enough) + " runs frequencies are mistaken for one another.");
}

// Each of the factors beside the tested one needs a frequency of its own, up to an eighth of the tested one's.
void addExtended(const FastSampler& sampler, std::int64_t count, Texts& cautions) {
  constexpr std::int64_t kRunsPerFactor = 64;  // for each low frequency
  const std::int64_t enough = count * (kRunsPerFactor * (count - 1) + 1);
  if (sampler.numSamples < enough)
    cautions.push_back("So few runs leave too few frequencies for so many factors: from " + std::to_string(enough) +
                       " runs on each has its own.");
}

void addFast(const FastSampler& sampler, const FactorList& factors, Texts& cautions) {
  const std::int32_t count = factors.correlatableCount();
  if (sampler.analysisMode() == FastSampler::kClassic) addClassic(sampler, count, cautions);
  if (sampler.analysisMode() == FastSampler::kExtended) addExtended(sampler, count, cautions);
}

void addReplicated(const RepLatinSampler& sampler, const FactorList& factors, Texts& cautions) {
  addCorrelation(sampler, factors, cautions);
  if (sampler.choice() != 0)
    cautions.emplace_back("With chosen factors this method makes no runs.");
  else if (sampler.replications() < 2)
    cautions.emplace_back("Importance measures compare replications: they need at least 2.");
}

// The methods whose runs are as many as one likes.
void addByRuns(const Sampler& sampler, const FactorList& factors, Texts& cautions) {
  if (sampler.numSamples == 0) cautions.emplace_back("No samples to generate");
  if (sampler.methodId == kRandom || sampler.methodId == kLatin) addCorrelation(sampler, factors, cautions);
  if (sampler.methodId == kLatin) addUnstratified(factors, cautions);
  if (sampler.methodId == kLpTau) addSequence(sampler.numSamples, factors.correlatableCount(), cautions);
  addRegression(sampler, factors, cautions);
}

}  // namespace

DesignFacts designFacts(const Sampler& sampler, const FactorList& factors) {
  DesignFacts facts{sampler.designRuns(factors), resultsOf(sampler), {}};
  Texts& cautions = facts.cautions;
  switch (sampler.methodId) {
    case kRandom:
    case kLatin:
    case kLpTau:
    case kFixed:
      addByRuns(sampler, factors, cautions);
      break;
    case kFast:
      addFast(static_cast<const FastSampler&>(sampler), factors, cautions);
      break;
    case kMorris:
      addMorris(static_cast<const MorrisSampler&>(sampler), cautions);
      break;
    case kRepLatin:
      if (static_cast<const RepLatinSampler&>(sampler).choice() != 0) facts.runs = 0;
      addReplicated(static_cast<const RepLatinSampler&>(sampler), factors, cautions);
      break;
    case kSobol:
      addSequence(static_cast<const SobolSampler&>(sampler).baseSize(), std::int64_t{2} * factors.correlatableCount(),
                  cautions);
      break;
    default:
      break;
  }
  return facts;
}

}  // namespace tarvex
