#include "sampling/Designs.h"
#include "sampling/MethodOffer.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/PrepSettings.h"
#include "sampling/Sampler.h"
#include "sampling/SamplerFactory.h"
#include "support/Test.h"

namespace tarvex {
namespace {

// What every method promises: a design can be resumed and repeated at any point, and a section is read back as written
// or not at all.
constexpr const char* kKinds = "scsrss";

struct Section {
  const char* name;
  std::int32_t method;
  std::string text;
};

const std::string kFastHead = "1\n601\n6\n4\n";
const std::string kGroups = "2 groups:\npair\none\n3 elements in groups\n0\tf5\n1\tf2\n0\tf0\n";
const std::string kUngenerated = "no group information\n";
const std::string kElements = "1\ta name\n-1\tk\n";
const std::string kRunTable = "0\t2\t5\t\n1\t3\t4\t\n0\t0\t0\t\n0\t0\t0\t\n";  // 2 factors, m 2, r 3

// Designs made run by run.
const std::vector<Section> kDesigns{
    {"lp-tau", kLpTau, "311\n6\n"},
    {"Morris", kMorris, "6\n9\n45\n6\n1\nNo elementary effects\n"},
    {"classic FAST", kFast, kFastHead + "0\n0 groups:\n0 elements in groups\n" + kUngenerated},
    {"extended FAST", kFast, kFastHead + "1\n0 groups:\n0 elements in groups\n" + kUngenerated},
    {"FAST on groups", kFast, kFastHead + "2\n" + kGroups + kUngenerated},
    {"Sobol", kSobol, "16\n160\n1\n1\n6\n"},
    {"Sobol to order 4", kSobol, "16\n256\n3\n4\n6\n"},
    {"fixed", kFixed, "2\n6\n2\n6\n0\n1\t2\t3\t4\t5\t6\t\n0.5\t2\t-3\t1e-09\t5\t1e+30\t\n"},
};

std::unique_ptr<Sampler> samplerFrom(const Section& section) {
  TextReader in = TextReader::fromText(std::to_string(section.method) + "\nsome name\n" + section.text + "next line");
  std::unique_ptr<Sampler> sampler = readSampler(in);
  std::string next;
  if (sampler) {
    EXPECT_TRUE(in.readLine(next, 80));
    EXPECT_EQ(next, "next line");
  }
  return sampler;
}

TEST(Sampler, designsAreTheSameInStepsAgainAndAfterAStop) {
  for (const Section& design : kDesigns) {
    SCOPED_TRACE(design.name);
    FactorList factors = listOf(kKinds);
    const std::unique_ptr<Sampler> sampler = samplerFrom(design);
    const std::int32_t asked = sampler->numSamples;
    const Table expected = generated(*sampler, factors);
    ASSERT_FALSE(expected.empty());
    EXPECT_EQ(sampler->numSamples, static_cast<std::int32_t>(expected.size()));
    for (const double step : {1.0, 7.0, 50.0, 150.0}) {
      sampler->numSamples = asked;  // FAST reports what its blocks took of them
      EXPECT_EQ(generated(*sampler, factors, step), expected) << step;
      // One that is given up leaves no trace in the next one.
      sampler->numSamples = asked;
      sampValues store;
      ASSERT_TRUE(store.allocate(factors.factorCount()));
      sampler->reset();
      factors.prepareOrder();
      sampler->generate(23.0, store, factors);
    }
  }
}

// Those of generated designs stand in the expected sample files.
TEST(Sampler, sectionsAreReadAsWritten) {
  for (std::int32_t method = 0; method < kMethodCount; ++method) {  // a preparation that nothing was generated from
    PrepSettings fresh;
    fresh.factors = listOf(kKinds);
    fresh.sampler = makeSampler(method);
    const PrepConfiguration prep = makePrep(std::move(fresh));
    EXPECT_TRUE(readSection(*makeSampler(method), sectionOf(*prep.sampler))) << method;
  }
  for (const Section& section : kDesigns) EXPECT_EQ(sectionOf(*samplerFrom(section)), section.text) << section.name;
  const std::unique_ptr<Sampler> sampler = makeSampler(kLatin);
  EXPECT_TRUE(readSection(*sampler, "  12\r\n\r\n4 7 \r\n"));
  EXPECT_EQ(sectionOf(*sampler), "12\n4\n7\n");
}

TEST(Sampler, sectionsThatDoNotFitAreRefused) {
  const std::string morris = "6\n2\n4\n2\n5\nElementary effects\n";
  for (const Section& section : {
           Section{"method beyond", 8, "1\n1\n1\n"},
           Section{"method negative", -1, "1\n1\n1\n"},
           Section{"element without tab", kRepLatin, "44\n6\n2\n0\n2\n3\n1 a\n-1\tk\n" + kRunTable},
           Section{"run of no replicate", kRepLatin,
                   "44\n6\n2\n0\n2\n3\n" + kElements + "0\t2\t6\t\n1\t3\t4\t\n0\t0\t0\t\n0\t0\t0\t\n"},
           Section{"no base design", kRepLatin, "44\n6\n2\n0\n0\n3\n" + kElements + kRunTable},
           Section{"no factors", kRepLatin, "44\n6\n0\n0\n2\n3\n" + kElements + kRunTable},
           Section{"empty lines that don't follow", kRepLatin, "44\n6\n2\n0\n2147483647\n0\n" + kElements + kRunTable},
           Section{"table of another width", kFixed, "1\n3\n1\n2\n0\n0.5\t2\t\n"},
           Section{"more runs than the table", kFixed, "100\n2\n1\n2\n0\n0.5\t2\t\n"},
           Section{"kind of no design", kSobol, "16\n160\n2\n1\n6\n"},
           Section{"no design heading", kFast, kFastHead + "0\n0 groups:\n0 elements in groups\n1\t1\t65\t65\n"},
           Section{"no heading of effects", kMorris, "6\n2\n4\n2\n5\n-1\n0\n"},
           Section{"effects without a base point", kMorris, morris + "0\n0\n-1\n0\n"},
           Section{"effect of no factor", kMorris, morris + "-1\n2\n-1\n0\n"},
           Section{"effect below", kMorris, morris + "-1\n-2\n-1\n0\n"},
           Section{"more base points than trajectories", kMorris, morris + "-1\n-1\n-1\n0\n"},
       })
    EXPECT_EQ(samplerFrom(section), nullptr) << section.name;
}

TEST(MethodOffer, reasons) {
  FactorList factors = listOf("sssc");
  factors.correlationMode = kDependenceTree;
  EXPECT_EQ(whyNotOffered(kMorris, factors),
            "Morris can't be used with a dependence tree. On offer for these factors: Random, Latin Hypercube, Fixed "
            "samples.");
  FactorList none = listOf("cr");
  EXPECT_EQ(whyNotOffered(kRandom, none), "There is nothing to sample: every factor is a constant or a relation.");
}

}  // namespace
}  // namespace tarvex
