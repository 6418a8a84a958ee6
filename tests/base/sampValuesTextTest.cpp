#include <gmock/gmock.h>

#include <tuple>

#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "base/sampValues.h"
#include "support/FailingCalls.h"
#include "support/Test.h"

namespace tarvex {
namespace {

using test::textOf;
using testing::HasSubstr;

TEST(SampValuesText, ByRunAndByFactor) {
  sampValues store;
  EXPECT_EQ(textOf(store), "0\n0\n0\n");
  ASSERT_TRUE(store.allocate(3));
  EXPECT_EQ(textOf(store), "0\n3\n0\n");
  const double rows[2][3] = {{1.0 / 3, -2, 1e-300}, {std::numeric_limits<double>::quiet_NaN(), -HUGE_VAL, 12345678901}};
  for (const auto& row : rows) ASSERT_GT(store.addRow(row), 0);
  EXPECT_EQ(textOf(store), "2\n3\n0\n0.3333333333\t-2\t1e-300\t\nnan\t-inf\t1.23456789e+10\t\n");
  ASSERT_TRUE(!store.setOrder(2) && store.setOrder(1));
  TextWriter out;
  store.write(out);
  out << 1.0 / 3;
  EXPECT_EQ(out.text(), "2\n3\n1\n0.3333333333\tnan\t\n-2\t-inf\t\n1e-300\t1.23456789e+10\t\n0.333333");
}

// A table of several windows, read from either listing, is the same table.
TEST(SampValuesText, LargeTablesByFactor) {
  constexpr std::int32_t kColumns = 100;
  sampValues store;
  ASSERT_TRUE(store.allocate(kColumns));
  std::vector<double> row(kColumns);
  for (std::int32_t r = 0; r < 2 * store.blockRows() + 77; ++r) {
    for (std::int32_t c = 0; c < kColumns; ++c) row[c] = r + c / 128.0;
    ASSERT_GT(store.addRow(row.data()), 0);
  }
  const std::string byRun = textOf(store);
  ASSERT_TRUE(store.setOrder(1));
  const std::string byFactor = textOf(store);
  for (const std::string& text : {byRun, byFactor}) {
    TextReader in = TextReader::fromText(text + "next");
    sampValues read;
    ASSERT_TRUE(read.read(in));
    EXPECT_EQ(in.peekLine(10), "next");
    ASSERT_TRUE(read.setOrder(0));
    EXPECT_TRUE(textOf(read) == byRun);
    ASSERT_TRUE(read.setOrder(1));
    EXPECT_TRUE(textOf(read) == byFactor);
  }
}

TEST(SampValuesText, DamagedTextLeavesAnEmptyStore) {
  for (const char* text :
       {"1\n1\n", "-1\n1\n0\n", "1\n1\n2\n1\t\n", "5\n0\n0\n", "2\n2\n1\n1\t2\t\n3\t\n", "2\n2\n1\n1\t2\t\n3\tx\t\n",
        "1\n1\n0\n1e999\t\n", "1\n2147483647\n1\n1\t\n", "2147483647\n2147483647\n1\n1\t\n"}) {
    SCOPED_TRACE(text);
    sampValues store;
    ASSERT_TRUE(store.allocate(1));
    TextReader in = TextReader::fromText(text);
    EXPECT_FALSE(store.read(in));
    EXPECT_TRUE(in.fail());
    EXPECT_EQ(store.rows() + store.columns(), 0);
  }
  for (const auto& [text, rowCount, columnCount] :
       {std::tuple{"0\n0\n0\n", 0, 0}, {"0\n7\n1\n", 0, 7}, {"1\n2\n0\n1 2", 1, 2}, {"1 2 1 +1 2 rest\n", 1, 2}}) {
    sampValues store;
    TextReader in = TextReader::fromText(text);
    EXPECT_TRUE(store.read(in) && in.ok() && in.atEnd()) << text;
    EXPECT_EQ(store.rows(), rowCount);
    EXPECT_EQ(store.columns(), columnCount);
  }
}

TEST(SampValuesText, AFullDiskFailsBothWays) {
  sampValues store;
  ASSERT_TRUE(store.allocate(2));
  const double row[2] = {1, 2};
  for (int i = 0; i < 300000; ++i) ASSERT_GT(store.addRow(row), 0);
  ASSERT_TRUE(store.setOrder(1));
  const std::string text = textOf(store);
  test::FailingCalls calls;
  calls.fail(test::FailingCalls::kPwrite, 2);
  TextReader in = TextReader::fromText(text);
  sampValues read;
  EXPECT_FALSE(read.read(in));
  EXPECT_THAT(in.problem(), HasSubstr("Cannot write the working file in "));
  calls.clearFailures();
  calls.fail(test::FailingCalls::kPread, 1, EIO);
  TextWriter out;
  ASSERT_TRUE(store.setOrder(0));
  store.write(out);
  EXPECT_THAT(out.problem(), HasSubstr("Cannot read the working file in "));
}

}  // namespace
}  // namespace tarvex
