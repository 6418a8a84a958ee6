#include <gtest/gtest.h>

#include "base/uniformRandom.h"
#include "sampling/Designs.h"
#include "sampling/FastSampler.h"
#include "sampling/FixedSampler.h"
#include "sampling/LpTauSampler.h"
#include "sampling/MorrisSampler.h"
#include "sampling/SobolSampler.h"

// What every design that is made run by run promises: it can be resumed, repeated and copied at any point, and its
// section is read back as written or not at all.

namespace tarvex {
namespace {

constexpr const char* kKinds = "scsrss";

struct Design {
  std::string name;
  std::unique_ptr<Sampler> sampler;
};

Design lpTau() {
  auto sampler = std::make_unique<LpTauSampler>();
  sampler->setSamples(311);
  return {"lp-tau", std::move(sampler)};
}

Design morris() {
  auto sampler = std::make_unique<MorrisSampler>();
  sampler->setLevels(6);
  sampler->setTrajectories(9);
  sampler->setSamples(45);
  return {"Morris", std::move(sampler)};
}

Design fast(std::int32_t mode) {
  auto sampler = std::make_unique<FastSampler>();
  sampler->setAnalysisMode(mode);
  sampler->setSamples(601);
  if (mode == FastSampler::kGroups) {
    for (const char* group : {"pair", "one"}) sampler->addGroup(group);
    sampler->addElement("pair", "f5");
    sampler->addElement("one", "f2");
    sampler->addElement("pair", "f0");
  }
  return {"FAST " + std::to_string(mode), std::move(sampler)};
}

Design sobol(std::int32_t kind, std::int32_t order) {
  auto sampler = std::make_unique<SobolSampler>();
  sampler->setBaseSize(16);
  sampler->setDesignKind(kind);
  sampler->setOrder(order);
  sampler->setSamples(static_cast<std::int32_t>(16 * SobolSampler::blockCount(4, order, kind, false)));
  return {"Sobol " + std::to_string(kind), std::move(sampler)};
}

Design fixed() {
  auto sampler = std::make_unique<FixedSampler>();
  sampler->setNumFactors(6);
  sampler->addRow({1, 2, 3, 4, 5, 6});
  sampler->addRow({0.5, 2, -3, 1e-9, 5, 1e30});
  sampler->setSamples(2);
  return {"fixed", std::move(sampler)};
}

std::vector<Design> designs() {
  std::vector<Design> all;
  all.push_back(lpTau());
  all.push_back(morris());
  for (const std::int32_t mode : {0, 1, 2}) all.push_back(fast(mode));
  all.push_back(sobol(SobolSampler::kFirstAndTotal, 1));
  all.push_back(sobol(SobolSampler::kUpToOrder, 4));
  all.push_back(fixed());
  return all;
}

TEST(DesignSamplers, giveTheSameRunsInStepsOfAnySize) {
  for (const Design& design : designs()) {
    SCOPED_TRACE(design.name);
    FactorList factors = listOf(kKinds);
    const std::unique_ptr<Sampler> atOnce = design.sampler->clone();
    const Table expected = generated(*atOnce, factors);
    ASSERT_FALSE(expected.empty());
    for (const double step : {0.1, 1.0, 7.0}) {
      const std::unique_ptr<Sampler> sampler = design.sampler->clone();
      EXPECT_EQ(generated(*sampler, factors, step), expected) << step;
      EXPECT_EQ(sectionOf(*sampler), sectionOf(*atOnce));
      EXPECT_EQ(sampler->numSamples, static_cast<std::int32_t>(expected.size()));
    }
  }
}

TEST(DesignSamplers, startAnewFromReset) {
  for (const Design& design : designs()) {
    SCOPED_TRACE(design.name);
    FactorList factors = listOf(kKinds);
    Sampler& sampler = *design.sampler;
    const std::int32_t asked = sampler.numSamples;
    const Table first = generated(sampler, factors);
    sampler.numSamples = asked;  // FAST reports what its blocks took of them
    EXPECT_EQ(generated(sampler, factors), first);
    // A generation that was given up leaves no trace in the next one, nor do draws of others.
    sampValues store;
    ASSERT_TRUE(store.allocate(factors.factorCount()));
    sampler.numSamples = asked;
    sampler.reset();
    factors.prepareOrder();
    sampler.generate(23.0, store, factors);
    sampler.numSamples = asked;
    std::int32_t other = -7;
    uniformRandom(other);
    EXPECT_EQ(generated(sampler, factors), first);
    // Fewer factors: nothing of the wider design is left.
    if (sampler.methodId == kLpTau) {
      FactorList fewer = listOf("ss");
      LpTauSampler fresh;
      fresh.setSamples(sampler.numSamples);
      EXPECT_EQ(generated(sampler, fewer), generated(fresh, fewer));
    }
  }
}

TEST(DesignSamplers, areCopiedInTheMiddleOfAGeneration) {
  for (const Design& design : designs()) {
    SCOPED_TRACE(design.name);
    if (design.sampler->methodId == kMorris || design.sampler->methodId == kFast) continue;  // share the random words
    FactorList factors = listOf(kKinds);
    factors.prepareOrder();
    sampValues store;
    ASSERT_TRUE(store.allocate(factors.factorCount()));
    design.sampler->reset();
    design.sampler->generate(21.0, store, factors);
    sampValues copiedStore = store;
    const std::unique_ptr<Sampler> copy = design.sampler->clone();
    EXPECT_EQ(design.sampler->generate(50.0, store, factors), 50.0);
    EXPECT_EQ(copy->generate(50.0, copiedStore, factors), 50.0);
    EXPECT_EQ(tableOf(copiedStore), tableOf(store));
  }
}

TEST(DesignSamplers, reportAStoreThatRefusesRows) {
  for (const Design& design : designs()) {
    SCOPED_TRACE(design.name);
    if (design.sampler->methodId == kFixed) continue;  // brings its own width
    FactorList factors = listOf(kKinds);
    factors.prepareOrder();
    sampValues store;  // without width
    design.sampler->reset();
    EXPECT_EQ(design.sampler->generate(50.0, store, factors), -1.0);
    EXPECT_EQ(design.sampler->errorText, store.errorText());
  }
}

// Sections before and after a generation, which has more to tell.
std::vector<Design> withAndWithoutDesign() {
  std::vector<Design> all = designs();
  for (const std::int32_t method : {kFast, kFixed, kLpTau, kMorris, kSobol})
    all.push_back({"untouched " + std::to_string(method), makeSampler(method)});
  FactorList factors = listOf(kKinds);
  for (Design& design : designs()) {
    generated(*design.sampler, factors);
    design.name += ", generated";
    all.push_back(std::move(design));
  }
  return all;
}

TEST(DesignSamplers, readTheirSectionsBack) {
  for (const Design& design : withAndWithoutDesign()) {
    SCOPED_TRACE(design.name);
    const std::string section = sectionOf(*design.sampler);
    const std::unique_ptr<Sampler> back = makeSampler(design.sampler->methodId);
    ASSERT_TRUE(readSection(*back, section));
    EXPECT_EQ(sectionOf(*back), section);
    if (back->numSamples < 2) continue;
    // The read sampler replaces what was there, and generates the same.
    FactorList factors = listOf(kKinds);
    generated(*back, factors);
    ASSERT_TRUE(readSection(*back, section));
    EXPECT_EQ(sectionOf(*back), section);
    back->numSamples = design.sampler->numSamples;
    EXPECT_EQ(generated(*back, factors), generated(*design.sampler, factors));
  }
}

TEST(DesignSamplers, leaveTheirDefaultsAfterADamagedSection) {
  for (const Design& design : withAndWithoutDesign()) {
    SCOPED_TRACE(design.name);
    const std::string section = sectionOf(*design.sampler);
    // The section cut at every byte that ends before its last line, and every word of it put in a bad one's place.
    std::vector<std::string> damaged;
    const std::size_t lastLine = section.rfind('\n', section.size() - 2) + 1;
    for (std::size_t length = 0; length < lastLine; ++length) damaged.push_back(section.substr(0, length));
    for (std::size_t i = 0; i < section.size(); ++i) {
      if (i > 0 && section[i - 1] != '\n' && section[i - 1] != '\t') continue;
      const std::size_t end = section.find_first_of("\t\n", i);
      for (const char* word : {"", "x", "-2", "7", "2147483647", "99999999999"})
        damaged.push_back(section.substr(0, i) + word + section.substr(end));
    }
    const std::unique_ptr<Sampler> untouched = makeSampler(design.sampler->methodId);
    for (const std::string& text : damaged) {
      const std::unique_ptr<Sampler> back = makeSampler(design.sampler->methodId);
      TextReader in = TextReader::fromText(text);
      back->readSection(in);
      if (in.ok()) {
        // Some other section, then; it is one all the same.
        const std::string accepted = sectionOf(*back);
        const std::unique_ptr<Sampler> again = makeSampler(design.sampler->methodId);
        ASSERT_TRUE(readSection(*again, accepted)) << text;
        EXPECT_EQ(sectionOf(*again), accepted) << text;
      } else if (back->methodId == kLpTau || back->methodId == kFast || back->methodId == kFixed) {
        EXPECT_EQ(sectionOf(*back), sectionOf(*untouched)) << text;
      } else {
        EXPECT_EQ(back->numSamples + back->numFactors, 0) << text;
      }
    }
    // Whatever stands in the first number's place, it must be one.
    const std::unique_ptr<Sampler> back = makeSampler(design.sampler->methodId);
    EXPECT_FALSE(readSection(*back, "x" + section));
    EXPECT_FALSE(readSection(*back, "-2" + section));
    EXPECT_FALSE(readSection(*back, ""));
  }
}

}  // namespace
}  // namespace tarvex
