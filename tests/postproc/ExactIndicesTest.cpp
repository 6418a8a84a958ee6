#include <numeric>

#include "base/uniformRandom.h"
#include "postproc/CurveSpectrum.h"
#include "postproc/DesignStudy.h"
#include "postproc/FastStats.h"
#include "postproc/ImportanceStats.h"
#include "postproc/MorrisStats.h"
#include "postproc/SobolBlocks.h"
#include "postproc/SobolStats.h"
#include "sampling/FastSampler.h"
#include "sampling/MorrisSampler.h"
#include "sampling/RepLatinSampler.h"
#include "sampling/SobolSampler.h"
#include "support/Test.h"

namespace tarvex {
namespace {

// The measures of the structured designs against closed-form decompositions of the variance.
// The inputs that a record stands for: its own name, or those of its group.
AnalyticModel::Mask maskOf(const std::vector<std::string>& names) {
  AnalyticModel::Mask mask = 0;
  for (const std::string& name : names) mask |= AnalyticModel::Mask{1} << (std::stoi(name.substr(1)) - 1);
  return mask;
}

std::string labelOf(const AnalyticModel& model, const IndexRecord& record) {
  return model.name + ' ' + record.name;
}

struct FastCase {
  AnalyticModel model;
  // A search curve counts four harmonics of a frequency. What a model has above them is missing from the first order
  // index and, from the other factors' low frequencies, reaches into the total one: no sample size removes it. Of
  // |4 x - 2| that is 1 - 96 / pi^4, 1.5 % of a factor's variance; of the Ishigami function less than 5 %.
  double lost;
};

std::vector<FastCase> fastCases() {
  return {{ishigamiModel(), 0.05}, {gModel({0.0, 1.0, 4.5, 9.0}), 0.015}};
}

std::unique_ptr<FastSampler> fastDesign(std::int32_t mode, std::int32_t runs) {
  auto sampler = std::make_unique<FastSampler>();
  EXPECT_TRUE(sampler->setAnalysisMode(mode));
  EXPECT_TRUE(sampler->setSamples(runs));
  return sampler;
}

TEST(ExactIndices, FastExtendedAndClassic) {
  constexpr std::int32_t kRuns = 5000;  // per factor, and in the classic test altogether
  for (const FastCase& which : fastCases()) {
    const AnalyticModel& model = which.model;
    const DesignStudy extended = makeDesignStudy(model, fastDesign(FastSampler::kExtended, kRuns * model.inputs));
    const DesignStudy classic = makeDesignStudy(model, fastDesign(FastSampler::kClassic, kRuns));
    FastStats blocks, curve;
    ASSERT_TRUE(blocks.compute(extended.prep, extended.outputs)) << blocks.errorText;
    ASSERT_TRUE(curve.compute(classic.prep, classic.outputs)) << curve.errorText;
    ASSERT_EQ(blocks.recordCount, model.inputs + 1);
    for (const IndexRecord& record : blocks.records) {
      SCOPED_TRACE(labelOf(model, record));
      const bool constant = record.name == "k";
      ASSERT_EQ(record.kind, constant ? FactorKind::Constant : FactorKind::Uncertain);
      const AnalyticModel::Mask mask = constant ? 0 : maskOf({record.name});
      const double first = constant ? 0.0 : model.index(mask);
      const double total = constant ? 0.0 : model.total(mask);
      EXPECT_NEAR(record.values[FastStats::kFirstOrder], first, which.lost);
      EXPECT_NEAR(record.values[FastStats::kTotalOrder], total, which.lost);
      EXPECT_NEAR(valueOf(curve, record.name, FastStats::kFirstOrder), first, which.lost);
      EXPECT_EQ(valueOf(curve, record.name, FastStats::kTotalOrder), 0.0);
    }
  }
}

TEST(ExactIndices, FastOnGroups) {
  const AnalyticModel model = ishigamiModel();
  auto sampler = fastDesign(FastSampler::kGroups, 2 * 65 * 100);  // a hundred curves for the group
  EXPECT_TRUE(sampler->addGroup("pair"));
  ASSERT_TRUE(sampler->addElement("pair", "x2") && sampler->addElement("pair", "x3"));
  const DesignStudy study = makeDesignStudy(model, std::move(sampler));
  FastStats stats;
  ASSERT_TRUE(stats.compute(study.prep, study.outputs)) << stats.errorText;
  ASSERT_EQ(stats.records.size(), 3u);  // the group, then x1 and the constant
  EXPECT_EQ(stats.records[0].name, "pair");
  EXPECT_EQ(stats.records[2].kind, FactorKind::Constant);
  const double lost = fastCases()[0].lost;
  EXPECT_NEAR(valueOf(stats, "x1", FastStats::kFirstOrder), 0.3139, lost);
  EXPECT_NEAR(valueOf(stats, "x1", FastStats::kTotalOrder), 0.5576, lost);
  EXPECT_NEAR(valueOf(stats, "pair", FastStats::kFirstOrder), 0.4424, lost);
  EXPECT_NEAR(valueOf(stats, "pair", FastStats::kTotalOrder), 0.6861, lost);
}

struct SobolCase {
  const char* name;
  std::int32_t kind;
  std::int32_t order;  // 0: the number of inputs
  bool cheap;
};

class SobolExact : public testing::TestWithParam<SobolCase> {};

TEST_P(SobolExact, AllTerms) {
  const SobolCase& which = GetParam();
  constexpr std::int32_t kBase = 4096;
  // The standard error of a mean of products of standardised outputs over as many random runs; quasi-random ones stay
  // below it.
  const double tolerance = 1.0 / std::sqrt(kBase);
  for (const AnalyticModel& model : {ishigamiModel(), gModel({0.0, 1.0, 4.5, 9.0})}) {
    const std::int32_t order = which.order == 0 ? model.inputs : which.order;
    auto sampler = std::make_unique<SobolSampler>();
    ASSERT_TRUE(sampler->setBaseSize(kBase) && sampler->setDesignKind(which.kind) && sampler->setOrder(order));
    const std::int64_t blocks = SobolSampler::blockCount(model.inputs, order, which.kind, which.cheap);
    ASSERT_TRUE(sampler->setSamples(static_cast<std::int32_t>(kBase * blocks)));
    const DesignStudy study = makeDesignStudy(model, std::move(sampler));
    SobolStats stats;
    ASSERT_TRUE(stats.compute(study.prep, study.outputs)) << stats.errorText;
    EXPECT_EQ(stats.extra, model.inputs);
    for (std::size_t i = 0; i < stats.records.size(); ++i) {
      const IndexRecord& record = stats.records[i];
      if (record.name == "k") continue;
      SCOPED_TRACE(labelOf(model, record));
      const AnalyticModel::Mask mask = maskOf(record.groupNames);
      EXPECT_NEAR(record.values[SobolStats::kIndex], model.index(mask), tolerance);
      if (record.groupNames.size() == 1) {
        EXPECT_NEAR(record.values[SobolStats::kTotal], model.total(mask), tolerance);
      }
      if (which.kind == SobolSampler::kUpToOrder) {
        EXPECT_NEAR(stats.closedIndex(static_cast<std::int32_t>(i), 0), model.closed(mask), tolerance);
      }
    }
    // As many terms as there are subsets up to the order, the last one without a block of its own.
    if (which.order == 0) {
      EXPECT_EQ(stats.termCount, (1 << model.inputs) - 1);
    }
  }
}

// The sums over the blocks are those of centred copies, each formed run by run.
TEST(ExactIndices, SobolSumsAreThePlainOnes) {
  constexpr std::int32_t kFactors = 3;
  for (const std::int32_t base : {1, 7, 2048, 5000}) {
    std::vector<double> runs(static_cast<std::size_t>(base) * (2 + 2 * kFactors));
    for (double& run : runs) run = base == 7 ? 0.1 : 1e3 + trialRandom();
    const SobolBlocks blocks(runs.data(), runs.size(), base);
    const double sum = std::accumulate(runs.begin(), runs.end(), 0.0);
    const double mean = base == 7 ? 0.1 : sum / static_cast<double>(runs.size());
    std::vector<double> centred = runs;
    for (double& run : centred) run -= mean;
    const auto product = [&](std::int32_t first, std::int32_t second) {
      const double* const x = centred.data() + first * base;
      return std::inner_product(x, x + base, centred.data() + second * base, 0.0);
    };
    const double meanA = std::accumulate(centred.begin(), centred.begin() + base, 0.0) / base;
    double squares = 0.0;
    for (std::int32_t i = 0; i < base; ++i) squares += (centred[i] - meanA) * (centred[i] - meanA);
    EXPECT_EQ(blocks.meanA(), meanA) << base;
    EXPECT_EQ(blocks.varianceA(), squares / base) << base;
    EXPECT_EQ(blocks.product(0, 1), product(0, 1)) << base;
    const auto sums = blocks.factorProducts(kFactors, {});
    for (std::int32_t j = 0; j < kFactors; ++j) {
      const auto& [aBlock, bBlock, aMirrored, bMirrored] = sums[static_cast<std::size_t>(j)];
      EXPECT_EQ(aBlock, product(0, 2 + j)) << base;
      EXPECT_EQ(bBlock, product(1, 2 + j)) << base;
      EXPECT_EQ(aMirrored, product(0, 2 + kFactors + j)) << base;
      EXPECT_EQ(bMirrored, product(1, 2 + kFactors + j)) << base;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Forms, SobolExact,
                         testing::Values(SobolCase{"first_and_total", SobolSampler::kFirstAndTotal, 1, false},
                                         SobolCase{"order_1", SobolSampler::kUpToOrder, 1, false},
                                         SobolCase{"order_2", SobolSampler::kUpToOrder, 2, false},
                                         SobolCase{"order_2_cheap", SobolSampler::kUpToOrder, 2, true},
                                         SobolCase{"all_orders", SobolSampler::kUpToOrder, 0, false},
                                         SobolCase{"all_orders_cheap", SobolSampler::kUpToOrder, 0, true}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(ExactIndices, ImportanceByReplicatedLatinHypercube) {
  constexpr std::int32_t kLevels = 200;
  constexpr std::int32_t kReplicates = 50;
  // The shuffle of a replicate exchanges 0.75 pairs a run, so that a column keeps exp(-1.5) of its places and a run has
  // equal levels in two columns with this excess probability: effects of like shape leak into each other.
  const double equalLevels = std::exp(-3.0);
  for (const AnalyticModel& model : {ishigamiModel(), gModel({0.0, 1.0, 4.5, 9.0})}) {
    auto sampler = std::make_unique<RepLatinSampler>();
    ASSERT_TRUE(sampler->setBaseDesign(kLevels));
    sampler->setReplications(kReplicates);
    const DesignStudy study = makeDesignStudy(model, std::move(sampler));
    ImportanceStats stats;
    ASSERT_TRUE(stats.compute(study.prep, study.outputs)) << stats.errorText;
    EXPECT_EQ(valueOf(stats, "k", 0), 0.0);
    for (int i = 0; i < model.inputs; ++i) {
      const double exact = model.firstOrder(i);
      // Three standard errors: of the spread of the level means, and of its product with the effect.
      double tolerance =
          3.0 * (std::sqrt(2.0 / kLevels) / kReplicates + 2.0 * std::sqrt(exact / kLevels / kReplicates));
      if (model.name == "g")
        for (int j = 0; j < model.inputs; ++j)
          if (j != i) tolerance += 2.0 * equalLevels * std::sqrt(exact * model.firstOrder(j));
      EXPECT_NEAR(valueOf(stats, "x" + std::to_string(i + 1), 0), exact, tolerance) << model.name << " x" << i + 1;
    }
  }
}

std::unique_ptr<MorrisSampler> morrisDesign(std::uint32_t levels, std::uint32_t trajectories, std::int32_t inputs) {
  auto sampler = std::make_unique<MorrisSampler>();
  EXPECT_TRUE(sampler->setLevels(levels) && sampler->setTrajectories(trajectories));
  EXPECT_TRUE(sampler->setSamples(static_cast<std::int32_t>(MorrisSampler::runCount(trajectories, inputs))));
  return sampler;
}

TEST(MorrisStats, LinearModelHasEffectsOfTwiceTheChange) {
  const std::vector<double> c = {3.0, -2.0, 0.5, 0.0};
  const auto linear = [&](const std::vector<double>& u, std::int32_t) {
    return std::inner_product(c.begin(), c.end(), u.begin(), 0.0);
  };
  for (const std::uint32_t levels : {4u, 6u, 5u}) {
    const DesignStudy study = makeDesignStudy(4, morrisDesign(levels, 7, 4), {linear});
    MorrisStats stats;
    ASSERT_TRUE(stats.compute(study.prep, study.outputs)) << stats.errorText;
    const double jump = static_cast<double>(levels / 2) / levels;
    for (std::size_t i = 0; i < c.size(); ++i) {
      const std::string name = "x" + std::to_string(i + 1);
      EXPECT_NEAR(valueOf(stats, name, MorrisStats::kMean), 2.0 * std::fabs(c[i]) * jump, 1e-14) << name;
      // The square root of a difference that cancels: half the digits.
      EXPECT_NEAR(valueOf(stats, name, MorrisStats::kSigma), 0.0, 1e-7) << name;
    }
    EXPECT_EQ(valueOf(stats, "k", MorrisStats::kMean), 0.0);
  }
}

TEST(MorrisStats, HandComputedSpread) {
  // One input, two trajectories, effects 2 |0 - 1| = 2 and 2 |5 - 2| = 6: mean 4, variance 8.
  const double y[] = {0.0, 1.0, 5.0, 2.0};
  const DesignStudy study =
      makeDesignStudy(1, morrisDesign(4, 2, 1), {[&](const std::vector<double>&, std::int32_t run) { return y[run]; }});
  MorrisStats stats;
  ASSERT_TRUE(stats.compute(study.prep, study.outputs));
  EXPECT_DOUBLE_EQ(valueOf(stats, "x1", MorrisStats::kMean), 4.0);
  EXPECT_DOUBLE_EQ(valueOf(stats, "x1", MorrisStats::kSigma), std::sqrt(8.0));
}

TEST(CurveSpectrum, SumIsThatOfItsFrequencies) {
  constexpr std::int32_t kRuns = 4001;
  std::vector<double> y;
  for (std::int32_t i = 0; i < kRuns; ++i) y.push_back(std::sin(0.01 * i * i));
  CurveSpectrum spectrum;
  ASSERT_TRUE(spectrum.load(y.data(), kRuns));
  for (const std::int32_t last : {0, 1, 2, 7, 1001}) {  // the last one is shared by the cores
    long double sum = 0.0L;
    for (std::int32_t w = 1; w <= last; ++w) sum += spectrum.at(w);
    long double added = 0.0L;
    EXPECT_TRUE(spectrum.addUpTo(last, added));
    EXPECT_EQ(added, sum) << last;
  }
}

}  // namespace
}  // namespace tarvex
