#include <utility>

#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "postproc/CellFormat.h"
#include "postproc/FastStats.h"
#include "postproc/ImportanceStats.h"
#include "postproc/MeasureRows.h"
#include "postproc/MorrisStats.h"
#include "postproc/RegressionStats.h"
#include "postproc/SavedTables.h"
#include "postproc/SobolStats.h"
#include "support/Test.h"

namespace tarvex {
namespace {

struct CellRow {
  double value;
  const char *measure, *statistic;
};

TEST(CellFormat, Numbers) {
  const CellRow rows[] = {
      // clang-format off
      {0.0,       "      0",   "      0"},
      {0.001,     "0.0010",    "0.001000"},
      {0.00099,   "0.00099",   "0.00099"},
      {-0.25,     "-0.2500",   "-0.250000"},
      {10000.0,   "10000.0000", "10000.000000"},
      {10000.1,   "  1e+04",   "  1e+04"},
      {-1234567., "-1.23e+06", "-1.23e+06"},
      {kNan,      "    nan",   "    nan"},
      {-kNan,     "    nan",   "    nan"},
      {kInf,      "    inf",   "    inf"},
      {-kInf,     "   -inf",   "   -inf"},
      // clang-format on
  };
  for (const CellRow& row : rows) {
    EXPECT_EQ(measureCell(row.value), row.measure);
    EXPECT_EQ(statisticCell(row.value), row.statistic);
  }
}

std::string expected(const std::string& name) {
  return test::readFile(std::string(TARVEX_TEST_DATA) + "/tables/" + name + ".txt");
}

template <class Write, class... Arguments>
std::string written(Write write, const Arguments&... arguments) {
  TextWriter out;
  write(out, arguments...);
  return out.text();
}

constexpr auto kUncertain = FactorKind::Uncertain;
constexpr auto kConstant = FactorKind::Constant;

TEST(SavedTables, Fast) {
  const auto stats = resultOf<FastStats>({{"x1", kUncertain, {0.31387, 0.5576}},
                                          {"k", kConstant, {0.0, 0.0}},
                                          {"r", FactorKind::Relation, {0.0, 0.0}},
                                          {"x2", kUncertain, {0.00012, -kNan}}});
  EXPECT_EQ(written(writeFastTable, stats, wholeTable(stats, 1, "y[max]"), false), expected("fast-classic"));
  EXPECT_EQ(written(writeFastTable, stats, wholeTable(stats, 1, "y[max]"), true), expected("fast-extended"));
}

TEST(SavedTables, Morris) {
  const auto stats = resultOf<MorrisStats>(
      {{"x1", kUncertain, {12345.678, 4.40367}}, {"k", kConstant, {0.0, 0.0}}, {"x2", kUncertain, {10000.0, kNan}}});
  EXPECT_EQ(written(writeMorrisTable, stats, wholeTable(stats, 1, "y[max]")), expected("morris"));
}

TEST(SavedTables, Importance) {
  const auto stats = resultOf<ImportanceStats>(
      {{"x1", kUncertain, {-0.0807867}}, {"k", kConstant, {0.0}}, {"a_name_longer_than_a_cell", kUncertain, {kInf}}});
  EXPECT_EQ(written(writeImportanceTable, stats, wholeTable(stats, 1, "y[max]")), expected("importance"));
}

TEST(SavedTables, Sobol) {
  auto stats =
      resultOf<SobolStats>({{"x1", kUncertain, {0.831426, 0.912348}, {"x1"}}, {"k", kConstant, {0.0, 0.0}, {"k"}}});
  stats.slotMode = SobolStats::kFirstAndTotal;
  EXPECT_EQ(written(writeSobolTable, stats, wholeTable(stats, 1, "y")), expected("sobol-first-total"));

  stats = resultOf<SobolStats>({{"x1", kUncertain, {0.25, 0.5, 0.26}, {"x1"}},
                                {"x2", kUncertain, {0.5, -0.0005, 0.52}, {"x2"}},
                                {"x1,x2", kUncertain, {0.25, 1.0}, {"x1", "x2"}}});
  stats.slotMode = SobolStats::kByTerm;
  EXPECT_EQ(written(writeSobolTable, stats, wholeTable(stats, 1, "y")), expected("sobol-terms"));
}

TEST(SavedTables, Regression) {
  // One variable; of each record the measures, the ranks, the flags, in which only SRC (number 4) matters.
  const auto record = [](const std::string& name, int kind, double value, int rank, int flag) {
    std::string text = name + '\n' + std::to_string(kind) + "\t\t";
    for (const double slot : {value, 1.0 * rank, 1.0 * flag})
      for (int measure = 0; measure < 7; ++measure) text += (measure == 4 ? std::to_string(slot) : "7") + "\t \t";
    return text + '\n';
  };
  TextReader in =
      TextReader::fromText("4\n1\n0.95\nindexes = yes\n" + record("x1", 3, 0.7, 1, 1) + record("k", 0, 0.0, 4, 0) +
                           record("x2", 3, -0.3, 2, 0) + record("x3", 2, 0.0, 3, 0) +
                           "3\n1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1\n" + "0.9 0.8 0.85 0.0004");
  RegressionStats stats;
  stats.read(in);
  ASSERT_TRUE(stats.computed);
  EXPECT_EQ(written(writeRegressionTable, stats, wholeTable(stats, 0, "y"), RegressionStats::kSrc),
            expected("regression"));
}

TEST(SavedTables, Uncertainty) {
  OutputTable table;
  ASSERT_TRUE(table.allocate(1));
  for (const double y : {1.0, 2.0, 5.0, 2.0}) ASSERT_GT(table.addRow(&y), 0);
  UaStats stats;
  ASSERT_TRUE(stats.compute({"y"}, table));
  EXPECT_EQ(written(writeUncertaintyTable, stats, 0, kLinearScale), expected("uncertainty"));
}

}  // namespace
}  // namespace tarvex
