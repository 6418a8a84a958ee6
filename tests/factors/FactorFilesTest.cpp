#include <gtest/gtest.h>

#include <filesystem>
#include <set>

#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "factors/Distribution.h"
#include "factors/FactorFiles.h"
#include "factors/FactorList.h"
#include "factors/TruncatedDistribution.h"
#include "support/Copies.h"
#include "support/Damage.h"
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

// A Stein sample of two rows in the place of 60: one row is damaged like another.
std::string shortened(std::string text) {
  const std::size_t rows = text.find("\n60\n");
  if (rows == std::string::npos) return text;
  std::size_t end = rows + 1;
  for (int line = 0; line < 4; ++line) end = text.find('\n', end) + 1;
  return text.substr(0, end).replace(rows, 4, "\n2\n") + text.substr(text.rfind('\n', text.size() - 2) + 1);
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

  // Loads the text. A refusal has its message and leaves the list; an accepted list comes back from its own text, and
  // those of its factors that weren't seen before can be sampled or refuse that.
  bool loads(const std::string& text) {
    std::filesystem::remove(path_);  // a fresh file is written faster than a truncated one
    test::writeFile(path_, text);
    FactorList list = test::copyOf(list_);
    std::string message;
    if (!loadFactorFile(path_, list, message)) {
      EXPECT_TRUE(message.starts_with("Error reading factors file\n" + path_ + ':')) << message;
      EXPECT_EQ(textOf(list), before_);
      return false;
    }
    TextReader in = TextReader::fromText(textOf(list));
    FactorList again;
    EXPECT_TRUE(again.read(in));
    EXPECT_TRUE(TruncatedDistribution::setDefaultTruncations(0.001, 0.999));
    EXPECT_EQ(textOf(list).find("\tinf"), std::string::npos);
    for (std::int32_t i = 0; i < list.factorCount(); ++i) {
      auto* distribution = dynamic_cast<Distribution*>(&list.factor(i));
      if (distribution == nullptr || !records_.insert(recordOf(*distribution)).second) continue;
      if (distribution->needsTable() && !distribution->prepareInverse()) continue;
      for (const double u : {1e-9, 0.3, 1.0 - 1e-9}) (void)distribution->value(u);
    }
    return true;
  }

  test::TempDirectory directory_;
  std::string path_ = directory_.file("list.fac");
  FactorList list_;
  std::string before_;
  std::set<std::string> records_;
};

TEST_F(FactorFiles, roundTripsAreByteForByte) {
  for (const std::string& name : kGolden) {
    FactorList list;
    std::string message;
    ASSERT_TRUE(loadFactorFile(test::goldenPath(name), list, message)) << name;
    ASSERT_TRUE(saveFactorFile(path_, list, message)) << name;
    const std::string text = test::readFile(test::goldenPath(name));
    EXPECT_EQ(test::readFile(path_), text) << name;
    std::string dos;  // and without its last line end
    for (const char c : text.substr(0, text.size() - 1)) dos += c == '\n' ? "\r\n" : std::string(1, c);
    test::writeFile(path_, dos);
    ASSERT_TRUE(loadFactorFile(path_, list, message)) << name;
    EXPECT_EQ(textOf(list), text) << name;
  }
}

TEST_F(FactorFiles, failuresNameTheReasonAndKeepTheOldFile) {
  std::string message;
  for (const std::string& path : {directory_.file("none.fac"), directory_.path()}) {
    EXPECT_FALSE(loadFactorFile(path, list_, message));
    EXPECT_TRUE(message.starts_with("Error opening factors file\n" + path + ": ")) << message;
  }
  test::writeFile(path_, "old");
  list_.factor(0).note = "two\nlines";
  EXPECT_FALSE(saveFactorFile(path_, list_, message));
  EXPECT_EQ(message, "Error opening file for output\n" + path_ + ": the note holds a line end");
  EXPECT_EQ(test::readFile(path_), "old");
  EXPECT_EQ(directory_.entries(), std::vector<std::string>{"list.fac"});
}

TEST_F(FactorFiles, refusalsSayWhereAndWhat) {
  struct Row {
    const char* from;  // in matrix.fac, replaced once
    const char* to;
    const char* problem;
  };
  const std::string sound = test::readFile(test::goldenPath("matrix.fac"));
  const Row rows[] = {
      {"Default", "Other", "1: expected the line 'Default Truncations:', found 'Other Truncations:'"},
      {"6 Dist", "-6 Dist", "4: the number of factors must not be negative, as -6 is"},
      {"Normal", "Gauss", "5: expected the type of a factor, found 'Gauss'"},
      {"\n1\t", "\nx\t", "8: expected the status of the factor, a whole number, found 'x"},
      {"\t0.999\n", "\t0.999 mm\n", "2: expected the number of factors, found 'mm'"},
      {"\t2\t0.001\t0.999\n", "\t2\t0.001\t0,999\n", "8: expected the end of the line, found ',999'"},
      {"1\t0.7\t", "1\t1.7\t", "49: a correlation must be between -1 and 1, not 1.7"},
      {"1\t0.7\t", "1\t0.5\t",
       "50: the correlation matrix must be symmetric: 0.7 in row 2, column 1 stands against 0.5"},
      {"Matrix:\n1", "Matrix:\n0", ": the diagonal of the correlation matrix must be 1, not 0"},
      {"\n1\n", "\n4\n", ": the correlation mode must be 0 to 3, not 4"},
      {"\n1\n", "\n1\n\nmore", ": expected the end of the file, found 'more'"},
  };
  for (const Row& row : rows) {
    std::string text = sound;
    const std::string from = row.from;
    const std::size_t at = from == "\n1\n" ? text.rfind(from) : text.find(from);
    ASSERT_NE(at, std::string::npos) << from;
    test::writeFile(path_, text.replace(at, from.size(), row.to));
    std::string message;
    EXPECT_FALSE(loadFactorFile(path_, list_, message)) << from;
    EXPECT_NE(message.find(row.problem), std::string::npos) << message;
  }
}

TEST_F(FactorFiles, damagedOnesFailOrGiveAUsableList) {
  for (const std::string name : {"kinds.fac", "mixed.fac", "tree.fac", "stein.fac"}) {
    const std::string sound = shortened(test::readFile(test::goldenPath(name)));
    ASSERT_TRUE(loads(sound)) << name;
    // Only between two records may a cut text still be a list.
    const std::size_t records = sound.find("Correlation information");
    const std::vector<std::string> lines = test::splitLines(sound);
    test::forEachDamage(sound, [&](const std::string& what, const std::string& text) {
      SCOPED_TRACE(name + ": " + what);
      if (!loads(text)) return;
      EXPECT_TRUE(!what.starts_with("cut") || text.size() < records);
      if (what.starts_with("long") || what.starts_with("without")) {
        const std::size_t line = std::stoul(what.substr(what.rfind(' ')));
        EXPECT_TRUE(lines[line - 1].empty());  // blank lines before numbers aren't missed
      }
      EXPECT_TRUE(what != "rubbish" && what != "nothing");
    });
  }
}

}  // namespace
}  // namespace tarvex
