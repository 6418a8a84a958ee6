#include "correlation/SteinRanks.h"

#include "base/TextWriter.h"
#include "factors/FactorList.h"
#include "factors/makeFactor.h"
#include "support/FailingCalls.h"
#include "support/Test.h"

namespace tarvex::test {
namespace {

// a, a constant, b; six observations.
FactorList listWithStein() {
  FactorList list;
  for (const char* type : {"Normal", "Constant", "Uniform"}) list.addFactor(makeFactor(type));
  EXPECT_TRUE(list.steinInfo.allocate(3));
  const double rows[][3] = {{0.3, 5, 7}, {0.1, 5, 7}, {0.2, 5, NAN}, {-1, 5, 2}, {8, 5, 1}, {4, 5, 1}};
  for (const auto& row : rows) EXPECT_GT(list.steinInfo.addRow(row), 0);
  list.correlationMode = kSteinSample;
  return list;
}

std::vector<std::int32_t> ranksOfColumn(const SteinRanks& ranks, std::int32_t column, std::int32_t rows) {
  std::vector<std::int32_t> values;
  for (std::int32_t row = 0; row < rows; ++row) values.push_back(ranks.rankOf(column, row));
  return values;
}

TEST(SteinRanks, blocksAreRankedByThemselves) {
  using Ranks = std::vector<std::int32_t>;
  const FactorList list = listWithStein();
  const SteinRanks whole(list, 6, 6, 1);
  EXPECT_EQ(ranksOfColumn(whole, 0, 6), (Ranks{3, 1, 2, 0, 5, 4}));
  // Equal values stay in row order, what is no number comes last; the constant's column doesn't count.
  EXPECT_EQ(ranksOfColumn(whole, 1, 6), (Ranks{3, 4, 5, 2, 0, 1}));
  const SteinRanks blocks(list, 6, 3, 2);
  EXPECT_EQ(ranksOfColumn(blocks, 0, 6), (Ranks{2, 0, 1, 0, 2, 1}));
  EXPECT_EQ(ranksOfColumn(blocks, 1, 6), (Ranks{0, 1, 2, 2, 0, 1}));
  const SteinRanks part(list, 4, 2, 2);
  EXPECT_EQ(ranksOfColumn(part, 0, 4), (Ranks{1, 0, 1, 0}));
}

TEST(SteinRanks, refusals) {
  FactorList list = listWithStein();
  EXPECT_EQ(SteinRanks(list, 7, 7, 1).errorText, "The Stein sample has fewer rows than the sample to generate.");
  list.addFactor(makeFactor("Normal"));
  EXPECT_EQ(SteinRanks(list, 3, 3, 1).errorText, "The Stein sample has fewer columns than the list has factors.");
  list.steinInfo.clear();
  const SteinRanks empty(list, 1, 1, 1);
  EXPECT_FALSE(empty.isValid());
  EXPECT_EQ(empty.errorText, "The Stein correlation sample is empty.\nNo correlation can be calculated.");
}

// A sample beyond what its store holds in memory, on a disk that fails.
TEST(SteinRanks, aStoreThatCannotBeReadFailsRanksAndRecord) {
  FactorList list;
  list.addFactor(makeFactor("Normal"));
  ASSERT_TRUE(list.steinInfo.allocate(1));
  for (double value = 0.0; list.steinInfo.rows() <= sampValues::cacheLimit + 1; ++value)
    ASSERT_GT(list.steinInfo.addRow(&value), 0);
  for (const auto call : {FailingCalls::kPwrite, FailingCalls::kPread}) {
    FailingCalls calls;
    calls.fail(call, 1, EIO);
    const SteinRanks ranks(list, 8, 8, 1);
    EXPECT_FALSE(ranks.isValid());
    EXPECT_NE(ranks.errorText.find("Input/output error"), std::string::npos) << ranks.errorText;
    TextWriter out;
    list.write(out);
    EXPECT_FALSE(out.ok());
    EXPECT_NE(out.problem().find("Input/output error"), std::string::npos) << out.problem();
  }
}

}  // namespace
}  // namespace tarvex::test
