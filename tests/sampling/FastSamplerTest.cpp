#include "sampling/FastSampler.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <complex>
#include <numbers>

#include "sampling/Designs.h"

namespace tarvex {
namespace {

using Frequencies = std::vector<std::int32_t>;

FastSampler configured(std::int32_t mode, std::int32_t runs, std::int32_t seed = 1) {
  FastSampler sampler;
  EXPECT_TRUE(sampler.setAnalysisMode(mode));
  EXPECT_TRUE(sampler.setSamples(runs));
  EXPECT_TRUE(sampler.setSeed(seed));
  return sampler;
}

void addGroup(FastSampler& sampler, const std::string& name, const std::vector<std::string>& elements) {
  sampler.addGroup(name);
  for (const std::string& element : elements) EXPECT_TRUE(sampler.addElement(name, element));
}

// Sums of all choices of `size` among the frequencies, with repetition.
void addSums(const Frequencies& frequencies, std::size_t first, int size, int sum, std::vector<int>& sums) {
  if (size == 0) {
    sums.push_back(sum);
    return;
  }
  for (std::size_t i = first; i < frequencies.size(); ++i)
    addSums(frequencies, i, size - 1, sum + frequencies[i], sums);
}

// Free of interference to order four: no sum of a w with whole a, absolute values adding up to five at most, is zero
// for distinct combinations. So a sum of one or two frequencies never equals another one of up to four or three.
bool interferes(const Frequencies& frequencies) {
  std::vector<std::vector<int>> sums(5);
  for (int size = 1; size <= 4; ++size) addSums(frequencies, 0, size, 0, sums[static_cast<std::size_t>(size)]);
  const auto contains = [&](std::size_t size, int sum) {
    return std::binary_search(sums[size].begin(), sums[size].end(), sum);
  };
  for (std::vector<int>& s : sums) std::sort(s.begin(), s.end());
  for (std::size_t size = 1; size <= 2; ++size) {
    // The same sum twice within a size is an interference of two different choices.
    if (std::adjacent_find(sums[size].begin(), sums[size].end()) != sums[size].end()) return true;
    for (const int sum : sums[size])
      for (std::size_t other = size + 1; size + other <= 5; ++other) {
        if (contains(other, sum)) return true;
      }
  }
  return false;
}

TEST(ClassicFrequencies, areFreeOfInterferenceToOrderFour) {
  for (std::int32_t k = 2; k <= kMaxFrequencies; ++k) {
    const Frequencies frequencies = classicFrequencies(k);
    ASSERT_EQ(frequencies.size(), static_cast<std::size_t>(k));
    EXPECT_FALSE(interferes(frequencies)) << k << " factors";
    for (const std::int32_t w : frequencies) EXPECT_EQ(w % 2, 1) << k;
  }
}

TEST(ClassicFrequencies, ofFewFactorsAreThePublishedOnes) {
  EXPECT_EQ(classicFrequencies(2), (Frequencies{5, 9}));
  EXPECT_EQ(classicFrequencies(3), (Frequencies{1, 9, 15}));
  EXPECT_EQ(classicFrequencies(5), (Frequencies{11, 21, 27, 35, 39}));
  EXPECT_EQ(classicFrequencies(50).front(), 2019);
  for (const std::int32_t k : {-1, 0, 1, 51}) EXPECT_TRUE(classicFrequencies(k).empty());
}

// The frequency of a search curve: where the spectrum of its column has its peak.
std::int32_t peakFrequency(const std::vector<double>& curve) {
  const auto n = static_cast<double>(curve.size());
  std::int32_t peak = 0;
  double highest = 0.0;
  for (std::int32_t w = 1; w <= static_cast<std::int32_t>(curve.size() / 2); ++w) {
    std::complex<double> sum;
    for (std::size_t r = 0; r < curve.size(); ++r)
      sum += (curve[r] - 0.5) * std::polar(1.0, 2.0 * std::numbers::pi * w * static_cast<double>(r) / n);
    if (std::norm(sum) > highest) {
      highest = std::norm(sum);
      peak = w;
    }
  }
  return peak;
}

Frequencies peaks(const Table& runs, std::size_t first, std::size_t length, const std::vector<std::int32_t>& columns) {
  const Table curve(runs.begin() + static_cast<std::ptrdiff_t>(first),
                    runs.begin() + static_cast<std::ptrdiff_t>(first + length));
  Frequencies found;
  for (const std::int32_t column : columns) found.push_back(peakFrequency(columnOf(curve, column)));
  return found;
}

TEST(FastSampler, runsTheClassicCurveWithAFrequencyAFactor) {
  for (const std::int32_t runs : {313, 350}) {
    FastSampler sampler = configured(FastSampler::kClassic, runs);
    FactorList factors = listOf("scsrsscs");
    const Table table = generated(sampler, factors);
    ASSERT_EQ(table.size(), static_cast<std::size_t>(runs));
    EXPECT_EQ(peaks(table, 0, table.size(), {0, 2, 4, 5, 7}), classicFrequencies(5));
    ASSERT_EQ(sampler.designTable().size(), 5U);
    EXPECT_EQ(sampler.designTable()[2].frequency, 27);
    EXPECT_EQ(sampler.designTable()[2].curveLength, runs);
    for (const std::vector<double>& run : table) {
      EXPECT_EQ(run[1], 101.0);
      EXPECT_EQ(run[3], 0.0);
      for (const std::size_t f : {0U, 2U, 4U, 5U, 7U}) EXPECT_TRUE(run[f] >= 0.0 && run[f] <= 1.0);
    }
  }
}

struct Blocks {
  const char* name;
  const char* kinds;
  std::int32_t mode, runs, generatedRuns;
  std::vector<std::vector<std::string>> groups;
  std::vector<FastBlock> table;
};

TEST(FastSampler, sizesItsBlocks) {
  const FastBlock least{8, 1, 65, 65};
  // clang-format off
  const Blocks cases[] = {
      {"three factors, the least size", "sss",     1, 195, 195, {}, {least, least, least}},
      {"shorter than its budget",       "sscr",    1, 200, 194, {}, {{12, 1, 97, 97}, {12, 1, 97, 97}}},
      {"a group of three of five",      "sssss",   2, 390, 388, {{"f0", "f1", "f2"}},
       {{8, 2, 65, 130}, {16, 1, 129, 129}, {16, 1, 129, 129}}},
      {"groups of one are factors",     "cssrs",   2, 260, 194 + 65, {{"f4"}, {"f2", "f1"}}, {{16, 1, 129, 129}, {8, 2, 65, 130}}},
      {"all in two groups",             "ssss",    2, 150, 130, {{"f0", "f3"}, {"f1", "f2"}}, {least, least}},
      {"a remainder is dropped",        "sss",     1, 197, 195, {}, {least, least, least}},
  };
  // clang-format on
  for (const Blocks& c : cases) {
    SCOPED_TRACE(c.name);
    FastSampler sampler = configured(c.mode, c.runs);
    for (std::size_t g = 0; g < c.groups.size(); ++g) addGroup(sampler, "g" + std::to_string(g), c.groups[g]);
    FactorList factors = listOf(c.kinds);
    EXPECT_TRUE(sampler.checkSampleSize(factors.correlatableCount()));
    const Table runs = generated(sampler, factors);
    EXPECT_EQ(sampler.numSamples, c.generatedRuns);
    EXPECT_EQ(runs.size(), static_cast<std::size_t>(c.generatedRuns));
    EXPECT_EQ(sampler.designTable(), c.table);
  }
}

// The factor under test has the highest frequency; the others share what lies at or below an eighth of it, so that its
// harmonics stay its own.
TEST(FastSampler, spreadsTheComplementaryFrequencies) {
  struct Case {
    std::int32_t runsPerUnit;
    std::string kinds;
    Frequencies complement;
  };
  for (const Case& c : {Case{65, "sssss", {1, 1, 1, 1}}, Case{257, "ssss", {1, 2, 3}}, Case{513, "scsrss", {1, 4, 7}},
                        Case{520, "ss", {1}}, Case{513, "sssssssssss", {1, 2, 3, 4, 5, 6, 7, 8, 1, 2}}}) {
    const std::vector<std::int32_t> stochastic = stochasticOf(c.kinds);
    FastSampler sampler =
        configured(FastSampler::kExtended, c.runsPerUnit * static_cast<std::int32_t>(stochastic.size()));
    FactorList factors = listOf(c.kinds);
    const Table runs = generated(sampler, factors);
    std::size_t first = 0;
    for (std::size_t unit = 0; unit < stochastic.size(); ++unit) {
      const FastBlock& block = sampler.designTable()[unit];
      Frequencies expected = c.complement;
      expected.insert(expected.begin() + static_cast<std::ptrdiff_t>(unit), block.frequency);
      EXPECT_EQ(peaks(runs, first, static_cast<std::size_t>(block.curveLength), stochastic), expected) << unit;
      EXPECT_LE(*std::max_element(c.complement.begin(), c.complement.end()), block.frequency / 8);
      first += static_cast<std::size_t>(block.blockLength);
    }
  }
}

TEST(FastSampler, givesAGroupItsFrequencyOnEveryCurve) {
  FastSampler sampler = configured(FastSampler::kGroups, 3 * 130);
  addGroup(sampler, "pair", {"f5", "f2"});
  FactorList factors = listOf("scsrss");  // stochastic 0 2 4 5; units: the pair, 0, 4
  const Table runs = generated(sampler, factors);
  const std::vector<std::int32_t> columns{0, 2, 4, 5};
  EXPECT_EQ(peaks(runs, 0, 65, columns), (Frequencies{1, 8, 1, 8}));
  EXPECT_EQ(peaks(runs, 65, 65, columns), (Frequencies{1, 8, 1, 8}));
  EXPECT_NE(runs[0], runs[65]);  // each curve has phases of its own
  EXPECT_EQ(peaks(runs, 130, 129, columns), (Frequencies{16, 1, 2, 1}));
  EXPECT_EQ(peaks(runs, 259, 129, columns), (Frequencies{1, 2, 16, 1}));
}

TEST(FastSampler, checksTheSampleSize) {
  struct Case {
    std::int32_t mode, k, least;
  };
  const std::string perUnit = "Sample size too small\nThe sample size must be >= 65 per factor/group";
  const std::string classic = "Sample size too small\nChoose sample size greater than or equal to ";
  for (const Case& c : {Case{0, 2, 73}, Case{0, 3, 105}, Case{0, 5, 313}, Case{1, 3, 195}, Case{2, 60, 3900}}) {
    FastSampler enough = configured(c.mode, c.least);
    EXPECT_TRUE(enough.checkSampleSize(c.k)) << c.k;
    FastSampler tooFew = configured(c.mode, c.least - 1);
    EXPECT_FALSE(tooFew.checkSampleSize(c.k)) << c.k;
    EXPECT_EQ(tooFew.errorText, c.mode == 0 ? classic + std::to_string(c.least) : perUnit);
  }
  FastSampler grouped = configured(FastSampler::kGroups, 3 * 65);
  addGroup(grouped, "three", {"a", "b", "c"});
  EXPECT_TRUE(grouped.checkSampleSize(5));
  EXPECT_FALSE(grouped.checkSampleSize(6));
  FastSampler most = configured(FastSampler::kExtended, 2147483647);
  EXPECT_FALSE(most.checkSampleSize(40000000));
  FastSampler plain = configured(FastSampler::kClassic, 1000000);
  EXPECT_TRUE(plain.checkSampleSize(50));
  EXPECT_FALSE(plain.checkSampleSize(51));
  EXPECT_FALSE(plain.checkSampleSize(1));
}

TEST(FastSampler, refusesWhatItCannotTest) {
  struct Case {
    const char* name;
    std::string kinds;
    std::int32_t mode, runs;
    std::vector<std::vector<std::string>> groups;
    std::string text;
  };
  const std::string silent = "No errors";
  const std::string tooSmall = "Sample set to generate too small";
  for (const Case& c : {
           Case{"51 factors", std::string(51, 's'), 0, 100000, {}, silent},
           Case{"one factor, classic", "s", 0, 1000, {}, silent},
           Case{"one factor, extended", "scc", 1, 1000, {}, silent},
           Case{"one group of all", "ss", 2, 1000, {{"f0", "f1"}}, silent},
           Case{"no complementary frequency", "ss", 1, 2 * 64, {}, tooSmall},
           Case{"no curve for a group", "sss", 2, 2 * 64, {{"f0", "f1"}}, tooSmall},
           Case{"empty group", "sss", 2, 1000, {{}}, "Group's cardinality equal to 0"},
           Case{"unknown factor", "ssss", 2, 1000, {{"f0", "x"}}, "Group g0: x is not a factor of the list"},
           Case{"constant", "sscs", 2, 1000, {{"f0", "f2"}}, "Group g0: f2 is a constant or a relation"},
           Case{"relation", "ssrs", 2, 1000, {{"f2"}}, "Group g0: f2 is a constant or a relation"},
           Case{"in two groups", "ssss", 2, 1000, {{"f0"}, {"f1", "f0"}}, "Group g1: f0 is in a group already"},
           Case{"nothing to do", "ss", 1, 0, {}, "  No samples to generate"},
       }) {
    SCOPED_TRACE(c.name);
    FastSampler sampler = configured(c.mode, c.runs);
    for (std::size_t g = 0; g < c.groups.size(); ++g) addGroup(sampler, "g" + std::to_string(g), c.groups[g]);
    FactorList factors = listOf(c.kinds);
    EXPECT_EQ(refusal(sampler, factors), c.text);
  }
  FactorList most = listOf(std::string(50, 's'));
  FastSampler classic = configured(FastSampler::kClassic, 60);
  EXPECT_EQ(generated(classic, most).size(), 60U);
}

TEST(FastSampler, keepsGroupsByName) {
  FastSampler sampler = configured(FastSampler::kGroups, 500);
  addGroup(sampler, "one", {"a", "b"});
  addGroup(sampler, "two", {"c"});
  addGroup(sampler, "three", {"d", "e"});
  EXPECT_FALSE(sampler.addElement("four", "f"));
  EXPECT_FALSE(sampler.removeGroup("four"));
  EXPECT_FALSE(sampler.removeElement("f"));
  EXPECT_EQ(sampler.groupSize("one"), 2);
  EXPECT_EQ(sampler.groupSize("four"), -1);
  ASSERT_NE(sampler.groupElement("three", 1), nullptr);
  EXPECT_EQ(*sampler.groupElement("three", 1), "e");
  for (const std::int32_t i : {-1, 2}) EXPECT_EQ(sampler.groupElement("three", i), nullptr);

  EXPECT_TRUE(sampler.removeGroup("one"));
  EXPECT_TRUE(sampler.removeElement("d"));
  EXPECT_EQ(sampler.groupNames(), (std::vector<std::string>{"two", "three"}));
  EXPECT_EQ(sampler.elementNames(), (std::vector<std::string>{"c", "e"}));
  EXPECT_EQ(sampler.elementGroups(), (std::vector<std::int32_t>{0, 1}));
  EXPECT_FALSE(sampler.isInGroup("a"));
  EXPECT_TRUE(sampler.isInGroup("e"));
}

TEST(FastSampler, dropsItsTableWhenTheGroupsChange) {
  FactorList factors = listOf("ssss");
  FastSampler sampler = configured(FastSampler::kGroups, 500);
  const auto hasTable = [&sampler] { return sectionOf(sampler).find("\ngroup information\n") != std::string::npos; };
  const auto generate = [&] { return !generated(sampler, factors).empty() && hasTable(); };
  EXPECT_TRUE(generate());
  addGroup(sampler, "g", {});
  EXPECT_FALSE(hasTable());
  sampler.addElement("g", "f1");
  EXPECT_TRUE(generate());
  sampler.addElement("g", "f2");
  EXPECT_FALSE(hasTable());
  EXPECT_TRUE(generate());
  sampler.removeElement("f1");
  EXPECT_FALSE(hasTable());
  EXPECT_TRUE(generate());
  sampler.removeGroup("g");
  EXPECT_FALSE(hasTable());
  EXPECT_TRUE(generate());
  sampler.setAnalysisMode(FastSampler::kExtended);
  EXPECT_FALSE(hasTable());
}

TEST(FastSampler, startsASecondGenerationFromTheReducedCount) {
  FastSampler sampler = configured(FastSampler::kExtended, 345);
  FactorList factors = listOf("sssss");
  EXPECT_EQ(generated(sampler, factors).size(), 325U);
  EXPECT_EQ(generated(sampler, factors).size(), 325U);
}

}  // namespace
}  // namespace tarvex
