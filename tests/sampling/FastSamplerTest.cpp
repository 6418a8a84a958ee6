#include "sampling/FastSampler.h"

#include <complex>
#include <numbers>

#include "sampling/Designs.h"
#include "support/Test.h"

namespace tarvex {
namespace {

using Frequencies = std::vector<std::int32_t>;

using Groups = std::vector<std::vector<std::string>>;

FastSampler configured(std::int32_t mode, std::int32_t runs, const Groups& groups = {}) {
  FastSampler sampler;
  EXPECT_TRUE(sampler.setAnalysisMode(mode) && sampler.setSamples(runs));
  for (std::size_t g = 0; g < groups.size(); ++g) {
    const std::string name = "g" + std::to_string(g);
    EXPECT_TRUE(sampler.addGroup(name));
    for (const std::string& element : groups[g]) EXPECT_TRUE(sampler.addElement(name, element));
  }
  return sampler;
}

// Sums of all choices of `size` among the frequencies, with repetition.
void addSums(const Frequencies& frequencies, std::size_t first, int size, int sum, std::vector<int>& sums) {
  if (size == 0) sums.push_back(sum);
  for (std::size_t i = first; size > 0 && i < frequencies.size(); ++i)
    addSums(frequencies, i, size - 1, sum + frequencies[i], sums);
}

// No sum of one or two frequencies equals another one of up to four or three: coefficients of five at most altogether.
bool interferes(const Frequencies& frequencies) {
  std::vector<int> sums[5];
  for (int size = 1; size <= 4; ++size) {
    addSums(frequencies, 0, size, 0, sums[size]);
    std::sort(sums[size].begin(), sums[size].end());
  }
  for (int size = 1; size <= 2; ++size) {
    if (std::adjacent_find(sums[size].begin(), sums[size].end()) != sums[size].end()) return true;
    for (int other = size + 1; size + other <= 5; ++other)
      for (const int sum : sums[size])
        if (std::binary_search(sums[other].begin(), sums[other].end(), sum)) return true;
  }
  return false;
}

TEST(ClassicFrequencies, areFreeOfInterferenceToOrderFour) {
  for (std::int32_t k = 2; k <= kMaxFrequencies; ++k) {
    const Frequencies frequencies = classicFrequencies(k);
    ASSERT_EQ(frequencies.size(), static_cast<std::size_t>(k));
    EXPECT_FALSE(interferes(frequencies)) << k << " factors";
  }
  EXPECT_EQ(classicFrequencies(3), (Frequencies{1, 9, 15}));
  EXPECT_EQ(classicFrequencies(5), (Frequencies{11, 21, 27, 35, 39}));
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

TEST(FastSampler, sizesItsBlocks) {
  struct Case {
    const char *name, *kinds;
    std::int32_t mode, runs, generatedRuns;
    Groups groups;
    std::vector<FastBlock> table;
  };
  const FastBlock least{8, 1, 65, 65};
  const FastBlock pair{8, 2, 65, 130};
  const FastBlock one{16, 1, 129, 129};
  for (const Case& c : {
           Case{"the least size", "sss", 1, 195, 195, {}, {least, least, least}},
           Case{"a remainder is dropped", "sss", 1, 197, 195, {}, {least, least, least}},
           Case{"shorter than its budget", "sscr", 1, 200, 194, {}, {{12, 1, 97, 97}, {12, 1, 97, 97}}},
           Case{"a group of three of five", "sssss", 2, 390, 388, {{"f0", "f1", "f2"}}, {pair, one, one}},
           Case{"groups of one are factors", "cssrs", 2, 260, 259, {{"f4"}, {"f2", "f1"}}, {one, pair}},
           Case{"all in two groups", "ssss", 2, 150, 130, {{"f0", "f3"}, {"f1", "f2"}}, {least, least}},
       }) {
    SCOPED_TRACE(c.name);
    FastSampler sampler = configured(c.mode, c.runs, c.groups);
    FactorList factors = listOf(c.kinds);
    EXPECT_TRUE(sampler.checkSampleSize(factors.correlatableCount()));
    EXPECT_EQ(sampler.designRuns(factors), c.generatedRuns);
    EXPECT_EQ(generated(sampler, factors).size(), static_cast<std::size_t>(c.generatedRuns));
    EXPECT_EQ(sampler.numSamples, c.generatedRuns);
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
  FastSampler grouped = configured(FastSampler::kGroups, 3 * 65, {{"a", "b", "c"}});
  EXPECT_TRUE(grouped.checkSampleSize(5));
  EXPECT_FALSE(grouped.checkSampleSize(6));
  FastSampler most = configured(FastSampler::kExtended, 2147483647);
  EXPECT_FALSE(most.checkSampleSize(40000000));
  FastSampler plain = configured(FastSampler::kClassic, 1000000);
  for (const std::int32_t k : {1, 51}) EXPECT_FALSE(plain.checkSampleSize(k));
}

TEST(FastSampler, refusesWhatItCannotTest) {
  struct Case {
    const char* name;
    std::string kinds;
    std::int32_t mode, runs;
    Groups groups;
    std::string text;
  };
  const std::string silent = "No errors";
  const std::string tooSmall = "Sample set to generate too small";
  for (const Case& c : {
           Case{"one factor, classic", "s", 0, 1000, {}, silent},
           Case{"one factor, extended", "scc", 1, 1000, {}, silent},
           Case{"one group of all", "ss", 2, 1000, {{"f0", "f1"}}, silent},
           Case{"no complementary frequency", "ss", 1, 2 * 64, {}, tooSmall},
           Case{"no curve for a group", "sss", 2, 2 * 64, {{"f0", "f1"}}, tooSmall},
           Case{"relation", "ssrs", 2, 1000, {{"f2"}}, "Group g0: f2 is a constant or a relation"},
           Case{"in two groups", "ssss", 2, 1000, {{"f0"}, {"f1", "f0"}}, "Group g1: f0 is in a group already"},
       }) {
    SCOPED_TRACE(c.name);
    FastSampler sampler = configured(c.mode, c.runs, c.groups);
    FactorList factors = listOf(c.kinds);
    EXPECT_EQ(refusal(sampler, factors), c.text);
  }
  EXPECT_FALSE(configured(FastSampler::kGroups, 1000, {{"f0"}}).addGroup("g0"));
}

}  // namespace
}  // namespace tarvex
