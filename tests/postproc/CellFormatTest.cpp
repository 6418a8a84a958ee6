#include "postproc/CellFormat.h"

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

}  // namespace
}  // namespace tarvex
