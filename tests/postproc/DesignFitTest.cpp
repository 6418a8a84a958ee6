#include "postproc/DesignStudy.h"
#include "postproc/MeasureSupport.h"
#include "sampling/FastSampler.h"
#include "sampling/MorrisSampler.h"
#include "sampling/RandomSampler.h"
#include "sampling/RepLatinSampler.h"
#include "sampling/SobolSampler.h"
#include "support/Test.h"

// Designs that don't fit the results, and results that have nothing to say: a text or nan, never more.
namespace tarvex {
namespace {

constexpr int kInputs = 3;

std::unique_ptr<Sampler> designOf(const std::string& method) {
  const auto sized = [](auto sampler, std::int64_t runs) -> std::unique_ptr<Sampler> {
    EXPECT_TRUE(sampler->setSamples(static_cast<std::int32_t>(runs)));
    return sampler;
  };
  if (method == "fast" || method == "classic") {
    auto sampler = std::make_unique<FastSampler>();
    EXPECT_TRUE(sampler->setAnalysisMode(method == "fast" ? FastSampler::kExtended : FastSampler::kClassic));
    return sized(std::move(sampler), 300);
  }
  if (method == "morris") {
    auto sampler = std::make_unique<MorrisSampler>();
    EXPECT_TRUE(sampler->setLevels(4) && sampler->setTrajectories(5));
    return sized(std::move(sampler), MorrisSampler::runCount(5, kInputs));
  }
  if (method == "importance") {
    auto sampler = std::make_unique<RepLatinSampler>();
    EXPECT_TRUE(sampler->setBaseDesign(10));
    sampler->setReplications(4);
    return sampler;
  }
  auto sampler = std::make_unique<SobolSampler>();
  const std::int32_t kind = method == "sobol" ? SobolSampler::kFirstAndTotal : SobolSampler::kUpToOrder;
  EXPECT_TRUE(sampler->setBaseSize(16) && sampler->setDesignKind(kind) && sampler->setOrder(2));
  return sized(std::move(sampler), 16 * SobolSampler::blockCount(kInputs, 2, kind, false));
}

DesignStudy studyOf(const std::string& method) {
  const auto sum = [](const std::vector<double>& u, std::int32_t) { return u[0] + 2.0 * u[1] * u[2]; };
  const auto constant = [](const std::vector<double>&, std::int32_t) { return 0.1; };
  const auto hole = [sum](const std::vector<double>& u, std::int32_t run) {
    return run == 3 ? std::numeric_limits<double>::quiet_NaN() : sum(u, run);
  };
  return makeDesignStudy(kInputs, designOf(method), {sum, constant, hole});
}

class EveryDesign : public testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    study_ = studyOf(GetParam());
    stats_ = makeSensitivityForMethod(study_.prep.sampler->methodId);
  }
  bool compute() { return stats_->compute(study_.prep, study_.outputs); }

  DesignStudy study_;
  std::unique_ptr<SensitivityStats> stats_;
};

TEST_P(EveryDesign, ConstantOutputsAndMissingRuns) {
  ASSERT_TRUE(compute()) << stats_->errorText;
  ASSERT_EQ(stats_->variableCount, 3);
  const std::string method = GetParam();
  for (const IndexRecord& record : stats_->records) {
    SCOPED_TRACE(record.name);
    const std::size_t slots = record.values.size() / 3;
    for (std::size_t slot = 0; slot < slots; ++slot) {
      const double constant = record.values[slots + slot];
      const bool closed = method == "terms" && slot + 1 == slots;
      if (record.kind == FactorKind::Uncertain && (method == "importance" || closed))
        EXPECT_TRUE(std::isnan(constant)) << "0 divided by 0";
      else
        EXPECT_EQ(constant, 0.0);
      EXPECT_TRUE(std::isfinite(record.values[slot]));
    }
  }
  const bool anyMissing = std::ranges::any_of(stats_->records, [](const IndexRecord& record) {
    return std::isnan(record.values[record.values.size() / 3 * 2]);
  });
  EXPECT_TRUE(anyMissing);
}

TEST_P(EveryDesign, ResultsOfOtherLengthAndForeignSamplersAreRefused) {
  ASSERT_TRUE(compute());
  const double row[] = {1.0, 2.0, 3.0};
  ASSERT_GT(study_.outputs.addRow(row), 0);
  EXPECT_FALSE(compute());
  const std::string runs = std::to_string(study_.outputs.rows() - 1);
  EXPECT_EQ(stats_->errorText,
            "The sample has " + runs + " runs, the results have " + std::to_string(study_.outputs.rows()) + ".");
  EXPECT_TRUE(stats_->records.empty());
  study_ = studyOf(GetParam());
  study_.prep.sampler = std::make_unique<RandomSampler>();
  EXPECT_FALSE(compute());
  EXPECT_FALSE(stats_->computed);
}

// Whichever report is answered by a stop, nothing is left behind; progress never goes back.
TEST_P(EveryDesign, StopsAtAnyReport) {
  for (const bool regression : {false, true}) {
    const auto stats = regression ? makeSensitivityOfType(SensitivityStats::kRegression) : std::move(stats_);
    int reports = 0, stopAt = -1;
    double last = 0.0;
    const auto listen = [&](double done) {
      EXPECT_TRUE(done > last - 1e-9 && done <= 1.0) << last << ' ' << done;
      last = done;
      return ++reports != stopAt;
    };
    ASSERT_TRUE(stats->compute(study_.prep, study_.outputs, Progress(listen))) << stats->errorText;
    const int all = reports;
    ASSERT_GT(all, 2);
    for (stopAt = 1; stopAt <= all; ++stopAt) {
      reports = 0;
      last = 0.0;
      EXPECT_FALSE(stats->compute(study_.prep, study_.outputs, Progress(listen))) << stopAt << " of " << all;
      EXPECT_TRUE(!stats->computed && stats->records.empty());
      EXPECT_EQ(stats->errorText, "The computation was stopped.");
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Methods, EveryDesign,
                         testing::Values("fast", "classic", "morris", "importance", "sobol", "terms"),
                         [](const auto& row) { return std::string(row.param); });

struct Damage {
  const char *method, *from, *to, *message;
};

// Of the extended FAST design every block is 12 1 97 97.
TEST(DesignFit, DamagedDesignsAreRefused) {
  for (const Damage& row : {
           Damage{"fast", "\ngroup information", "\nno group information", kDesignMissing},
           Damage{"fast", "12\t1\t97\t97", "12\t1\t98\t97", kDesignDamaged},
           Damage{"fast", "12\t1\t97\t97", "0\t1\t1\t97", kDesignDamaged},
           Damage{"fast", "12\t1\t97\t97", "268435455\t2147483647\t2147483641\t97", kDesignDamaged},
           Damage{"fast", "12\t1\t97\t97", "12\t0\t97\t97", kDesignDamaged},
           Damage{"classic", "\t300\t300", "\t3\t300", kDesignDamaged},
           Damage{"morris", "\nElementary effects", "\nNo elementary effects", kDesignMissing},
           Damage{"morris", "\n2\n", "\n3\n", kDesignDamaged},
           Damage{"sobol", "\n16\n128\n", "\n7\n128\n", kDesignDamaged},
           Damage{"sobol", "\n128\n1\n2\n", "\n128\n3\n1000000\n", kDesignDamaged},
           Damage{"terms", "\n16\n128\n", "\n64\n128\n", kDesignDamaged},
       }) {
    SCOPED_TRACE(std::string(row.method) + row.to);
    DesignStudy study = studyOf(row.method);
    ASSERT_NO_FATAL_FAILURE(damage(study, row.from, row.to));
    const auto stats = makeSensitivityForMethod(study.prep.sampler->methodId);
    EXPECT_FALSE(stats->compute(study.prep, study.outputs));
    EXPECT_EQ(stats->errorText, row.message);
    EXPECT_TRUE(stats->records.empty());
  }
}

}  // namespace
}  // namespace tarvex
