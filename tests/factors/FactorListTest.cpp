#include "factors/FactorList.h"

#include "base/TextReader.h"
#include "factors/IntervalDistribution.h"
#include "factors/TruncatedDistribution.h"
#include "factors/makeFactor.h"
#include "support/Copies.h"
#include "support/Test.h"

namespace tarvex {
namespace {

using test::textOf;

bool readText(const std::string& text, FactorList& list) {
  TextReader in = TextReader::fromText(text);
  return list.read(in);
}

// Named after their place: a0, a1, ...
FactorList listOf(const std::vector<std::string>& types) {
  FactorList list;
  for (const std::string& type : types) {
    std::unique_ptr<Factor> factor = makeFactor(type);
    factor->name = "a" + std::to_string(list.factorCount());
    list.addFactor(std::move(factor));
  }
  return list;
}

std::vector<std::int32_t> orderOf(FactorList& list) {
  list.prepareOrder();
  std::vector<std::int32_t> order;
  for (std::int32_t i = 0; i < list.factorCount(); ++i) order.push_back(list.factorAt(i));
  list.releaseOrder();
  return order;
}

// A list of four constants or normals with the given lines of the tree.
std::string treeText(const std::string& types, const std::vector<std::string>& lines) {
  std::string text = "Default Truncations:\n0.001\t0.999\n\n4 Distributions:\n";
  for (const char type : types)
    text += type == 'n' ? "Normal\na\n\n1\t0\t1\t0.001\t0.999\n\n" : "Constant\nc\n\n1\t1\n\n";
  std::string matrix;
  const auto order = std::count(types.begin(), types.end(), 'n');
  for (long row = 0; row < order; ++row, matrix += '\n')
    for (long column = 0; column < order; ++column) matrix += row == column ? "1 " : "0 ";
  text += "Correlation information\n";
  for (const std::string& line : lines) text += line + '\n';
  return text + "Correlation Matrix:\n" + matrix + "Stein Information:\n\n0\n0\n0\n0\n";
}

TEST(FactorList, emptyOneAndPlainFactorsAreReadBackAndDummiesNot) {
  for (const std::string& text : {textOf(FactorList()), textOf(listOf({"Factor", "Constant", "Factor"}))}) {
    FactorList list = listOf({"Normal"});
    ASSERT_TRUE(readText(text, list));
    EXPECT_EQ(textOf(list), text);
  }
  FactorList list;
  EXPECT_FALSE(readText(textOf(listOf({"Dummy"})), list));
}

TEST(FactorList, linksNeverCloseALoop) {
  FactorList list = listOf({"Normal", "Normal", "Constant", "Normal", "Relation"});
  EXPECT_TRUE(list.link(1, 0, 0.5));
  EXPECT_TRUE(list.link(3, 1, -0.25));
  for (const auto& [child, parent] : {std::pair{0, 3}, {0, 0}, {2, 0}, {0, 4}, {0, 9}, {-1, 0}})
    EXPECT_FALSE(list.link(child, parent, 0.1)) << child << ' ' << parent;
  EXPECT_EQ(list.node(0).parent, -1);
  EXPECT_TRUE(list.link(3, 0, 0.75));  // away from 1
  EXPECT_TRUE(list.node(1).children.empty());
  EXPECT_EQ(list.node(0).children, (std::vector<std::int32_t>{1, 3}));
  EXPECT_TRUE(list.link(1, -1, 0.5));  // a root again
  EXPECT_EQ(list.node(1).correlation, 0.0);
  EXPECT_EQ(list.node(0).children, (std::vector<std::int32_t>{3}));
}

TEST(FactorList, orderFollowsTheTreeInItsModeOnly) {
  FactorList list = listOf({"Relation", "Normal", "Constant", "Normal", "Normal", "Constant", "Normal"});
  ASSERT_TRUE(list.link(1, 6, 0.5));
  ASSERT_TRUE(list.link(3, 1, 0.5));
  EXPECT_EQ(orderOf(list), (std::vector<std::int32_t>{1, 3, 4, 6, 2, 5, 0}));
  EXPECT_EQ(list.parentOf(1), -1);
  list.correlationMode = kDependenceTree;
  EXPECT_EQ(orderOf(list), (std::vector<std::int32_t>{4, 6, 1, 3, 2, 5, 0}));
  EXPECT_EQ(list.parentOf(1), 6);
}

TEST(FactorList, matrixGrowsAndCopiesHaveEverything) {
  FactorList list = listOf({"Normal", "Constant", "Uniform"});
  ASSERT_TRUE(list.setMatrix(0, 1, 0.7F));
  for (const float outside : {1.01F, -1.01F, std::numeric_limits<float>::quiet_NaN()}) {
    EXPECT_FALSE(list.setMatrix(0, 1, outside));
    EXPECT_FALSE(list.link(2, 0, outside));
  }
  EXPECT_FALSE(list.setMatrix(1, 1, 0.5F));
  list.addFactor(makeFactor("Relation"));
  list.addFactor(makeFactor("Beta"));
  EXPECT_EQ(list.matrixAt(1, 0), 0.7F);
  EXPECT_EQ(list.matrixAt(0, 2), 0.0F);
  EXPECT_EQ(list.matrixAt(2, 2), 1.0F);
  ASSERT_TRUE(list.setMatrix(2, 0, 0.25F));
  EXPECT_EQ(list.matrixAt(1, 0) + list.matrixAt(0, 2) + list.matrixAt(1, 2), 0.7F + 0.25F);
  ASSERT_TRUE(list.link(2, 0, 0.5));
  list.correlationMode = kSteinSample;
  list.steinFileName = "observed.txt";
  ASSERT_TRUE(list.steinInfo.allocate(2));
  const double row[] = {1.25, -3.0};
  ASSERT_EQ(list.steinInfo.addRow(row), 1);
  const FactorList copy = test::copyOf(list);
  const std::string text = textOf(list);
  list.clear();
  EXPECT_EQ(list.steinInfo.rows(), 0);
  EXPECT_EQ(textOf(copy), text);
  list = test::copyOf(copy);
  EXPECT_EQ(textOf(list), text);
}

TEST(FactorList, treeOfAFileMustHoldTogether) {
  const struct {
    const char *what, *types;
    std::vector<std::string> lines;
    bool reads;
  } rows[] = {
      {"chain", "nnnn", {"0 -1 1 1", "0.5 0 1 2", "0.5 1 1 3", "0.5 2 0"}, true},
      {"two children", "nnnn", {"0 -1 2 3 1", "0.5 0 0", "0 -1 0", "0.5 0 0"}, true},
      {"loop of two", "nnnn", {"0.5 1 1 1", "0.5 0 1 0", "0 -1 0", "0 -1 0"}, false},
      {"loop of three beside a root", "nnnn", {"0 -1 0", "0.5 3 1 2", "0.5 1 1 3", "0.5 2 1 1"}, false},
      {"parent beyond the end", "nnnn", {"0.5 4 0", "0 -1 0", "0 -1 0", "0 -1 0"}, false},
      {"child unaware", "nnnn", {"0 -1 1 1", "0 -1 0", "0 -1 0", "0 -1 0"}, false},
      {"parent unaware", "nnnn", {"0 -1 0", "0.5 0 0", "0 -1 0", "0 -1 0"}, false},
      {"child twice, another left out", "nnnn", {"0 -1 2 1 1", "0.5 0 0", "0.5 0 0", "0 -1 0"}, false},
      {"constant child", "nnnc", {"0 -1 1 3", "0 -1 0", "0 -1 0", "0.5 0 0"}, false},
      {"constant parent", "nnnc", {"0.5 3 0", "0 -1 0", "0 -1 0", "0 -1 1 0"}, false},
      {"link above 1", "nnnn", {"0 -1 1 1", "1.5 0 0", "0 -1 0", "0 -1 0"}, false},
      {"link that is no number", "nnnn", {"0 -1 1 1", "nan 0 0", "0 -1 0", "0 -1 0"}, false},
      {"huge count", "nnnn", {"0 -1 2147483647", "0 -1 0", "0 -1 0", "0 -1 0"}, false},
  };
  for (const auto& row : rows) {
    FactorList list;
    EXPECT_EQ(readText(treeText(row.types, row.lines), list), row.reads) << row.what;
  }
}

TEST(FactorList, fewerRecordsThanAnnouncedAreTaken) {
  const std::string all = textOf(listOf({"Normal", "Discrete", "Relation"}));
  const std::string records = all.substr(0, all.find("Correlation information"));
  const std::string announced = std::string(records).replace(records.find("3 Dist"), 1, "2147483647");
  FactorList list;
  ASSERT_TRUE(readText(announced, list));
  EXPECT_EQ(list.factorCount(), 3);
  EXPECT_EQ(list.correlationMode, kNoCorrelation);
  // What follows is taken for a record.
  EXPECT_FALSE(readText(announced + all.substr(records.size()), list));
  // As many as announced: the rest must be there.
  EXPECT_FALSE(readText(records, list));
}

TEST(FactorList, weightsOfAFileAreScaledWithinTheirRounding) {
  const struct {
    const char* what;
    std::string intervals;
    bool proper;
  } rows[] = {
      {"thirds", "3\n0 1 0.333333\n1 2 0.333333\n2 3 0.333333\n", true},
      {"just above", "2\n0 1 0.500001\n1 2 0.5\n", true},
      {"beyond rounding", "2\n0 1 0.500002\n1 2 0.500001\n", false},
  };
  for (const auto& row : rows) {
    for (const char* type : {"Uniform", "LogUniform", "Discrete"}) {
      TextReader in = TextReader::fromText("x\n\n1\t" + row.intervals);
      const std::unique_ptr<Factor> factor = makeFactor(type);
      factor->read(in);
      EXPECT_TRUE(in.ok()) << row.what;
      EXPECT_EQ(dynamic_cast<IntervalDistribution&>(*factor).checkWeights(), row.proper) << type << ' ' << row.what;
    }
  }
}

TEST(FactorList, defaultTruncationsOfAReadListStay) {
  FactorList list;
  ASSERT_TRUE(TruncatedDistribution::setDefaultTruncations(0.1, 0.8));
  const std::string text = textOf(listOf({"Normal"}));
  ASSERT_TRUE(TruncatedDistribution::setDefaultTruncations(0.001, 0.999));
  EXPECT_FALSE(readText(text.substr(0, text.size() - 3), list));
  EXPECT_EQ(TruncatedDistribution::defaultLeftTruncation(), 0.001);
  ASSERT_TRUE(readText(text, list));
  EXPECT_EQ(TruncatedDistribution::defaultLeftTruncation(), 0.1);
  // A pair that isn't one is passed over.
  ASSERT_TRUE(readText("Default Truncations:\n0.9\t0.2\n\n" + text.substr(text.find("1 Dist")), list));
  EXPECT_EQ(TruncatedDistribution::defaultRightTruncation(), 0.8);
  ASSERT_TRUE(TruncatedDistribution::setDefaultTruncations(0.001, 0.999));
}

}  // namespace
}  // namespace tarvex
