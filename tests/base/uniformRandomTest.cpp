#include "base/uniformRandom.h"

#include <cstdlib>
#include <sstream>
#include <vector>

#include "support/Test.h"

namespace tarvex {
namespace {

using test::goldenPath;
using test::readLines;

// The published streams, block by block; every block begins with fresh shared words.
TEST(UniformRandom, GivesThePublishedStreams) {
  std::int32_t word = 0;
  std::int32_t other = 0;
  bool trial = false;
  int compared = 0;
  int callsOfPair = 0;
  for (const std::string& line : readLines(goldenPath("streams.txt"))) {
    if (line.empty()) continue;
    std::istringstream in(line);
    std::string first;
    in >> first;
    SCOPED_TRACE(line);
    if (first == "#") {
      trial = line.find("trialRandom") != std::string::npos;
      if (trial) restoreInitialTrialState();
    } else if (first == "seed" || first == "start") {
      in >> word;
      if (first == "seed") word = -word;
      restoreInitialRandomState();
    } else if (first == "words") {
      std::string name;
      in >> name >> word >> name >> other;
      restoreInitialRandomState();
    } else if (first == "word") {
      std::int32_t expected = 0;
      in >> expected;
      ASSERT_EQ(word, expected);
    } else if (first == "a" || first == "b") {
      double result = 0;
      std::int32_t a = 0;
      std::int32_t b = 0;
      in >> result >> a >> b;
      if (callsOfPair++ == 18) word = 0;
      ASSERT_EQ(uniformRandom(first == "a" ? word : other), result);
      ASSERT_EQ(word, a);
      ASSERT_EQ(other, b);
      ++compared;
    } else {
      const double result = std::stod(first);
      ASSERT_EQ(trial ? trialRandom() : uniformRandom(word), result);
      std::int32_t expected = 0;
      if (!trial && in >> expected) {
        ASSERT_EQ(word, expected);
      }
      ++compared;
    }
  }
  EXPECT_EQ(compared, 7 * 40 + 5 * 40 + 25 + 40);
}

// Results never leave the open interval, whatever the word; the shared words survive words of the whole range.
TEST(UniformRandom, StaysInTheOpenIntervalForEveryWord) {
  restoreInitialRandomState();
  std::uint32_t bits = 12345;
  for (int i = 0; i < 2000000; ++i) {
    bits = bits * 1664525U + 1013904223U;
    std::int32_t word = static_cast<std::int32_t>(bits >> (i % 3));
    const double result = uniformRandom(word);
    ASSERT_TRUE(result > 0 && result < 1) << "word " << static_cast<std::int32_t>(bits) << " gives " << result;
  }
  restoreInitialRandomState();
  std::int32_t word = -221838;  // of whose draws the last is one at which the words cancel out
  for (int i = 0; i < 1454; ++i) ASSERT_GT(uniformRandom(word), 0.0) << i;
}

// Many at once are the same numbers as one after the other, from words that many calls have left and from any other.
TEST(UniformRandom, ManyAtOnceAreThoseOfSingleCalls) {
  const char* const asked = std::getenv("TARVEX_LONG_TEST");
  const int blocks = asked == nullptr ? 2000 : std::atoi(asked) / 500;
  std::uint32_t bits = 54321;
  std::vector<std::int32_t> words{1, -1, 5648423, 2147483647, 2147483562, -2147483647, 0, 53687};
  for (int block = 0; block < blocks; ++block) {
    bits = bits * 1664525U + 1013904223U;
    const auto place = static_cast<std::size_t>(block) % words.size();
    if (block % 100 == 99) words[place] = static_cast<std::int32_t>(bits);
    // A restart gives both ways the same shared words; what comes before it, and after it, are other words' leavings.
    std::vector<double> many(bits >> 22), single(many.size());
    std::int32_t word = -static_cast<std::int32_t>(bits >> 1), other = word;
    std::int32_t next = words[place], nextOther = next;
    static_cast<void>(uniformRandom(word));  // restarts
    uniformRandom(next, many.data(), many.size());
    static_cast<void>(uniformRandom(other));
    for (double& number : single) number = uniformRandom(nextOther);
    ASSERT_EQ(many, single) << words[place];
    ASSERT_EQ(next, nextOther);
    words[place] = next;
  }
}

}  // namespace
}  // namespace tarvex
