#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>

#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "factors/Distribution.h"
#include "factors/FactorList.h"
#include "factors/TruncatedDistribution.h"
#include "support/FailingCalls.h"
#include "support/Golden.h"
#include "support/TempDirectory.h"
#include "support/TextFiles.h"

namespace tarvex {
namespace {

const std::vector<std::string> kGolden{"kinds.fac", "ishigami.fac", "unit4.fac", "pair.fac", "mixed.fac",
                                       "tree.fac",  "matrix.fac",   "stein.fac", "plant.fac"};

std::string textOf(const FactorList& list) {
  TextWriter out;
  list.write(out);
  return out.text();
}

std::string recordOf(const Factor& factor) {
  TextWriter out;
  factor.write(out);
  return out.text();
}

std::string joined(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + '\n';
  return text;
}

// A Stein sample of two rows in the place of 60: one row is damaged like another.
std::string shortened(std::vector<std::string> lines) {
  const auto rows = std::find(lines.begin(), lines.end(), "60");
  if (rows != lines.end()) {
    *rows = "2";
    lines.erase(rows + 4, lines.end() - 1);
  }
  std::string text = joined(lines);
  text.pop_back();
  return text;
}

class FactorFiles : public testing::Test {
 protected:
  FactorFiles() {
    std::unique_ptr<Factor> factor = makeFactor("Normal");
    factor->name = "before";
    list_.addFactor(std::move(factor));
    before_ = textOf(list_);
  }
  ~FactorFiles() override { EXPECT_TRUE(TruncatedDistribution::setDefaultTruncations(0.001, 0.999)); }

  // Loads the text. A refusal has its message and leaves the list; an accepted list comes back from its own text.
  bool loads(const std::string& text) {
    test::writeFile(path_, text);
    FactorList list = list_;
    std::string message;
    if (!loadFactorFile(path_, list, message)) {
      EXPECT_EQ(message, "Error reading factors file");
      EXPECT_EQ(textOf(list), before_);
      return false;
    }
    last_ = list;
    TextReader in = TextReader::fromText(textOf(list));
    FactorList again;
    EXPECT_TRUE(again.read(in));
    EXPECT_TRUE(TruncatedDistribution::setDefaultTruncations(0.001, 0.999));
    return true;
  }

  // Each factor of the last list that differs from the sound one's can be sampled, or refuses that.
  void sampleChanged(const FactorList& sound) {
    for (std::int32_t i = 0; i < std::min(last_.factorCount(), sound.factorCount()); ++i) {
      auto* distribution = dynamic_cast<Distribution*>(&last_.factor(i));
      if (distribution == nullptr || recordOf(*distribution) == recordOf(sound.factor(i))) continue;
      if (distribution->needsTable() && !distribution->prepareInverse()) continue;
      for (const double u : {1e-9, 0.3, 1.0 - 1e-9}) (void)distribution->value(u);
    }
  }

  test::TempDirectory directory_;
  std::string path_ = directory_.file("list.fac");
  FactorList list_;
  FactorList last_;
  std::string before_;
};

TEST_F(FactorFiles, roundTripsAreByteForByte) {
  for (const std::string& name : kGolden) {
    FactorList list;
    std::string message;
    ASSERT_TRUE(loadFactorFile(test::goldenPath(name), list, message)) << name;
    ASSERT_TRUE(saveFactorFile(path_, list, message)) << name;
    EXPECT_EQ(test::readFile(path_), test::readFile(test::goldenPath(name))) << name;
  }
}

TEST_F(FactorFiles, carriageReturnsAndAMissingLastLineEndAreTaken) {
  const std::string text = test::readFile(test::goldenPath("kinds.fac"));
  std::string dos;
  for (const char c : text) dos += c == '\n' ? "\r\n" : std::string(1, c);
  for (const std::string& variant : {dos, text.substr(0, text.size() - 1)}) {
    test::writeFile(path_, variant);
    FactorList list;
    std::string message;
    ASSERT_TRUE(loadFactorFile(path_, list, message));
    EXPECT_EQ(textOf(list), text);
  }
}

TEST_F(FactorFiles, messagesNameTheReason) {
  std::string message;
  EXPECT_FALSE(loadFactorFile(directory_.file("none.fac"), list_, message));
  EXPECT_EQ(message, "Error opening factors file");
  EXPECT_FALSE(loadFactorFile(directory_.path(), list_, message));
  EXPECT_EQ(message, "Error opening factors file");
  EXPECT_FALSE(saveFactorFile(directory_.file("none/list.fac"), list_, message));
  EXPECT_EQ(message, "Error opening file for output");
  EXPECT_EQ(textOf(list_), before_);
}

TEST_F(FactorFiles, aFullDiskKeepsTheOldFile) {
  test::writeFile(path_, "old");
  for (const auto call : {test::FailingCalls::kWrite, test::FailingCalls::kFsync, test::FailingCalls::kRename}) {
    test::FailingCalls calls;
    calls.fail(call, 1);
    std::string message;
    EXPECT_FALSE(saveFactorFile(path_, list_, message));
    EXPECT_EQ(message, "Error opening file for output");
  }
  EXPECT_EQ(test::readFile(path_), "old");
  EXPECT_EQ(directory_.entries(), std::vector<std::string>{"list.fac"});
}

// The text ends behind each line in turn, and within it. Only between two records may that still be a list.
TEST_F(FactorFiles, cutFilesFail) {
  for (const std::string name : {"mixed.fac", "tree.fac"}) {
    const std::string text = test::readFile(test::goldenPath(name));
    const std::size_t records = text.find("Correlation information");
    int taken = 0;
    for (std::size_t end = 0; end + 2 < text.size(); ++end) {
      const bool loaded = loads(text.substr(0, end));
      taken += loaded ? 1 : 0;
      EXPECT_TRUE(!loaded || end < records) << name << ' ' << text.substr(0, end);
    }
    EXPECT_GT(taken, 0);
  }
}

TEST_F(FactorFiles, missingLinesAndLongLinesFail) {
  for (const std::string name : {"kinds.fac", "stein.fac"}) {
    const std::vector<std::string> lines = test::splitLines(shortened(test::readLines(test::goldenPath(name))));
    for (std::size_t i = 0; i < lines.size(); ++i) {
      std::vector<std::string> damaged = lines;
      damaged[i] = std::string(5000, 'x');
      EXPECT_FALSE(loads(joined(damaged))) << name << " line " << i + 1;
      damaged[i] = std::string(5000, '1');
      EXPECT_FALSE(loads(joined(damaged))) << name << " line " << i + 1;
      damaged = lines;
      damaged.erase(damaged.begin() + static_cast<std::ptrdiff_t>(i));
      // Blank lines before numbers and rows of equal form aren't missed.
      const bool loaded = loads(joined(damaged));
      EXPECT_TRUE(!loaded || lines[i].empty()) << name << " line " << i + 1;
    }
  }
}

TEST_F(FactorFiles, damagedNumbersFailOrGiveAUsableList) {
  for (const std::string name : {"kinds.fac", "tree.fac", "stein.fac"}) {
    const std::string text = shortened(test::readLines(test::goldenPath(name)));
    ASSERT_TRUE(loads(text));
    const FactorList sound = last_;
    int numbers = 0;
    for (std::size_t i = 0; i < text.size();) {
      const bool starts = (i == 0 || text[i - 1] == '\n' || text[i - 1] == '\t' || text[i - 1] == ' ');
      const bool isNumber = starts && (std::isdigit(static_cast<unsigned char>(text[i])) != 0 || text[i] == '-');
      std::size_t end = i;
      while (end < text.size() && std::isspace(static_cast<unsigned char>(text[end])) == 0) ++end;
      if (!isNumber || text[end == text.size() ? i : end] == ')') {
        ++i;
        continue;
      }
      // Numbers of expressions are text.
      const std::size_t lineStart = text.rfind('\n', i) + 1;
      const bool inText = std::isalpha(static_cast<unsigned char>(text[lineStart])) != 0;
      for (const std::string bad : {"text", "1e999", "2147483647", "-1"}) {
        const bool loaded = loads(text.substr(0, i) + bad + text.substr(end));
        if (loaded) sampleChanged(sound);
        const bool mayLoad = inText || bad == "2147483647" || bad == "-1";
        EXPECT_TRUE(!loaded || mayLoad) << name << " at " << i << ": " << bad;
      }
      ++numbers;
      i = end;
    }
    EXPECT_GT(numbers, 50);
  }
}

TEST_F(FactorFiles, rubbishFails) {
  std::uint32_t state = 12345;
  for (int round = 0; round < 200; ++round) {
    std::string rubbish;
    for (int i = 0; i < 400; ++i) {
      state = state * 1664525U + 1013904223U;
      rubbish += static_cast<char>(state >> 24U);
    }
    EXPECT_FALSE(loads(rubbish));
    EXPECT_FALSE(loads("Default Truncations:\n0.001\t0.999\n\n3 Distributions:\nNormal\na\n\n1\t" + rubbish));
  }
  EXPECT_FALSE(loads(""));
}

}  // namespace
}  // namespace tarvex
