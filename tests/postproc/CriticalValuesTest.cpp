#include "postproc/CriticalValues.h"

#include "support/Test.h"

namespace tarvex {
namespace {

TEST(CriticalValues, StudentQuantile) {
  struct Row {
    const char* name;
    std::int32_t freedom;
    double confidence, expected;
  };
  const Row rows[] = {
      {"first cell", 1, 0.75, 1.000},
      {"last column", 1, 0.9995, 636.619},
      {"the cell that stands as printed", 12, 0.975, 2.189},
      {"last row with its own freedom", 30, 0.95, 1.697},
      {"mean of 30 and 40", 35, 0.95, (1.697 + 1.684) / 2},
      {"end of the first mean", 40, 0.95, (1.697 + 1.684) / 2},
      {"mean of 40 and 60", 41, 0.99, (2.423 + 2.390) / 2},
      {"mean of 60 and 120", 120, 0.9, (1.296 + 1.289) / 2},
      {"beyond the table", 300, 0.75, 0.674},
      {"single precision level", 10, 0.9995f, 4.587},
      {"lower limit of a window", 10, 0.74, -1.0},
      {"upper limit of a window", 10, 0.98, -1.0},
      {"no window", 10, 0.5, -1.0},
      {"no freedom", 0, 0.95, -1.0},
      {"negative freedom", -7, 0.95, -1.0},
      {"no level", 10, std::nan(""), -1.0},
  };
  for (const Row& row : rows) EXPECT_DOUBLE_EQ(studentQuantile(row.freedom, row.confidence), row.expected) << row.name;
}

// A slip in the printed values would break their order; the deviating cell at 12 keeps it.
TEST(CriticalValues, StudentTableFallsWithFreedomAndRisesWithConfidence) {
  const double levels[] = {0.75, 0.9, 0.95, 0.975, 0.99, 0.995, 0.9995};
  for (std::int32_t freedom = 1; freedom <= 121; ++freedom)
    for (int i = 0; i < 7; ++i) {
      EXPECT_GE(studentQuantile(freedom, levels[i]), studentQuantile(freedom + 1, levels[i])) << freedom;
      if (i == 0) continue;
      EXPECT_GT(studentQuantile(freedom, levels[i]), studentQuantile(freedom, levels[i - 1])) << freedom;
    }
}

TEST(CriticalValues, KolmogorovHalfWidth) {
  EXPECT_DOUBLE_EQ(kolmogorovHalfWidth(100, 0.8), 0.107);
  EXPECT_DOUBLE_EQ(kolmogorovHalfWidth(100, 0.99), 0.163);
  EXPECT_EQ(kolmogorovHalfWidth(100, 0.985), -1.0);  // the limit between two windows
  EXPECT_EQ(kolmogorovHalfWidth(100, 0.75), -1.0);
}

}  // namespace
}  // namespace tarvex
