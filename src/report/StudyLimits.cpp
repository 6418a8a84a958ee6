#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "factors/TruncatedDistribution.h"
#include "model/ModelConfiguration.h"
#include "postproc/Quantiles.h"
#include "postproc/RegressionStats.h"
#include "postproc/SobolStats.h"
#include "postproc/VelsConfiguration.h"
#include "report/Document.h"
#include "report/MeasureSummary.h"
#include "report/StudySections.h"
#include "sampling/FastSampler.h"
#include "sampling/MorrisSampler.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/RepLatinSampler.h"
#include "sampling/SobolSampler.h"

namespace tarvex {

namespace {

// Fewer than these and the estimates say little; usual rules of the field.
constexpr std::int32_t kRunsAFactor = 10;      // for a regression
constexpr std::int32_t kFewTrajectories = 10;  // of Morris
constexpr std::int32_t kFewBlockRuns = 500;    // of a block of Sobol's design
constexpr std::int32_t kFewReplications = 10;  // of a level of the replicated design
constexpr double kLittleFit = 0.7;             // R squared on ranks
constexpr std::size_t kNamesInALimit = 6;

struct LimitList {
  const StudyParts& study;
  std::vector<std::string> sentences = {};

  void add(std::string sentence) { sentences.push_back(std::move(sentence)); }
  template <class Choose>
  std::vector<std::string> factors(Choose choose) const {
    std::vector<std::string> names;
    for (std::int32_t i = 0; i < study.prep.factors.factorCount(); ++i)
      if (choose(study.prep.factors.factor(i))) names.push_back(study.prep.factors.factor(i).name);
    return names;
  }
  template <class Choose>
  std::string variables(Choose choose) const {
    std::vector<std::string> names;
    const auto& all = study.vels.selectedVariables();
    for (std::size_t v = 0; v < all.size(); ++v)
      if (choose(v)) names.push_back(all[v]);
    return listed(names, kNamesInALimit);
  }
};

void addFewRuns(LimitList& list) {
  const Sampler* const sampler = list.study.prep.sampler.get();
  if (const auto* const morris = dynamic_cast<const MorrisSampler*>(sampler)) {
    if (morris->trajectories() < kFewTrajectories)
      list.add(fmt::format("{} a factor are few: another seed may give another order. {} or more are usual.",
                           counted(morris->trajectories(), "effect"), kFewTrajectories));
    list.add(
        "The runs of a Morris design lie on a grid and are no sample of the distributions: mean, quantiles and "
        "histograms describe the runs, not the uncertainty of the outputs.");
  } else if (const auto* const sobol = dynamic_cast<const SobolSampler*>(sampler)) {
    if (sobol->baseSize() < kFewBlockRuns)
      list.add(fmt::format("Blocks of {} are small for indices: small ones are lost in the error of estimation.",
                           counted(sobol->baseSize(), "run")));
  } else if (const auto* const replicated = dynamic_cast<const RepLatinSampler*>(sampler)) {
    if (replicated->replications() < kFewReplications)
      list.add(fmt::format("{} a level are few: importances are uncertain, and small ones may come out below 0.",
                           counted(replicated->replications(), "run")));
  } else if (dynamic_cast<const FastSampler*>(sampler) == nullptr) {
    const auto varied =
        static_cast<std::int32_t>(list.factors([](const Factor& factor) { return factor.isStochastic(); }).size());
    const std::int32_t runs = list.study.prep.samples.rows();
    if (varied > 0 && runs < kRunsAFactor * varied)
      list.add(fmt::format("{} are few for {}: a regression wants ten a factor, and R squared flatters the fit.",
                           counted(runs, "run"), counted(varied, "factor")));
  }
}

void addDesign(LimitList& list) {
  const PrepConfiguration& prep = list.study.prep;
  if (prep.external == 1)
    list.add(
        "The sample was made elsewhere: it is taken for runs that stand for themselves, independent of each other.");
  else if (prep.methodId() == kFixed)
    list.add("The runs were chosen by hand: shares of runs are no probabilities unless they were drawn as a sample.");
  else if (const std::string caution = intervalCaution(prep.methodId()); !caution.empty())
    list.add(caution);
  if (isCorrelated(prep.factors))
    list.add(
        "The factors are correlated: a measure of one also carries what it shares with others, and shares of the "
        "variance don't add up to the whole.");
}

void addRegressionLimits(LimitList& list) {
  const auto* const regression = dynamic_cast<const RegressionStats*>(list.study.vels.sensitivity.get());
  if (regression == nullptr || !regression->computed) return;
  const std::string poor = list.variables([&](std::size_t v) {
    double raw = 0.0, ranks = 0.0;
    const auto variable = static_cast<std::int32_t>(v);
    const UaStats& statistics = list.study.vels.uncertainty;
    const bool isConstant =
        variable < statistics.variableCount() && statistics.minimum(variable) == statistics.maximum(variable);
    return !isConstant && regression->notComputedReason(variable, RegressionStats::kSrrc).empty() &&
           regression->determinationAdjusted(variable, raw, ranks) && ranks < kLittleFit;
  });
  if (!poor.empty())
    list.add(
        fmt::format("The regression explains little of {} (R squared on ranks below {}): its coefficients don't "
                    "rank the factors where effects are not monotone or factors interact.",
                    poor, kLittleFit));
  list.add(
      fmt::format("Significance is that of a one-sided test at {} for each factor by itself: it says that a measure "
                  "is above 0, not that it is large.",
                  cell(regression->alpha)));
}

void addRuns(LimitList& list) {
  const auto& quantiles = list.study.quantiles.variables;
  std::int64_t most = 0;
  const std::string gaps = list.variables([&](std::size_t v) {
    if (v >= quantiles.size() || quantiles[v].missing == 0) return false;
    most = std::max(most, quantiles[v].missing);
    return true;
  });
  if (!gaps.empty())
    list.add(
        fmt::format("Runs failed or gave no number: up to {} of {}. Quantiles leave them out; moments and measures "
                    "of {} are no numbers.",
                    most, list.study.model.results.runCount(), gaps));
  const UaStats& statistics = list.study.vels.uncertainty;
  const std::string constant = list.variables([&](std::size_t v) {
    const auto variable = static_cast<std::int32_t>(v);
    return variable < statistics.variableCount() && statistics.minimum(variable) == statistics.maximum(variable);
  });
  if (!constant.empty())
    list.add("The same in all runs, so that nothing can be said of what drives it: " + constant + '.');
  const std::string infinite = list.variables([&](std::size_t v) {
    const auto variable = static_cast<std::int32_t>(v);
    return variable < statistics.variableCount() &&
           (std::isinf(statistics.minimum(variable)) || std::isinf(statistics.maximum(variable)));
  });
  if (!infinite.empty()) list.add("Some runs are infinite: " + infinite + '.');
  if (list.study.model.results.hasTimeAxis())
    list.add(
        "Outputs over time are analysed at the times, or the maximum, that their variables name; at others other "
        "factors may lead.");
}

void addFactors(LimitList& list) {
  const auto discrete = list.factors([](const Factor& factor) { return factor.typeName == "Discrete"; });
  if (!discrete.empty())
    list.add(
        fmt::format("{} {} discrete: each value counts as a number, and equal ones are ranked in the order of the "
                    "runs.",
                    listed(discrete, kNamesInALimit), discrete.size() == 1 ? "is" : "are"));
  double least = 1.0;
  const auto cut = list.factors([&least](const Factor& factor) {
    const auto* const truncated = dynamic_cast<const TruncatedDistribution*>(&factor);
    if (truncated == nullptr || (truncated->leftTruncation() <= 0.0 && truncated->rightTruncation() >= 1.0))
      return false;
    least = std::min(least, truncated->rightTruncation() - truncated->leftTruncation());
    return true;
  });
  if (!cut.empty())
    list.add(
        fmt::format("The tails of {} are cut off, to as little as {} of the probability: values beyond never occur, "
                    "and the moments in the table of factors are those of the whole distributions.",
                    listed(cut, kNamesInALimit), cell(least)));
  const auto related = list.factors([](const Factor& factor) { return factor.isRelation(); });
  if (!related.empty())
    list.add(fmt::format("{} {} computed from other factors and {} no measures.", listed(related, kNamesInALimit),
                         related.size() == 1 ? "is" : "are", related.size() == 1 ? "has" : "have"));
  if (list.study.vels.sensitivity) {
    std::vector<std::string> collinear;
    for (const IndexRecord& record : list.study.vels.sensitivity->records)
      if (record.kind == FactorKind::Correlated) collinear.push_back(record.name);
    if (!collinear.empty())
      list.add(fmt::format("{} can't be told apart from another factor in this sample and {} no measures.",
                           listed(collinear, kNamesInALimit), collinear.size() == 1 ? "has" : "have"));
  }
}

}  // namespace

void addStudyLimits(Document& out, const StudyParts& study) {
  LimitList list{study};
  addFewRuns(list);
  addDesign(list);
  addRegressionLimits(list);
  addRuns(list);
  addFactors(list);
  list.add(
      "All numbers hold for the model as it was run and the distributions as they were given; what is wrong with "
      "either is not in them.");
  out.add(Heading{"Known limits"});
  for (std::string& sentence : list.sentences) out.add(Paragraph{std::move(sentence)});
}

}  // namespace tarvex
