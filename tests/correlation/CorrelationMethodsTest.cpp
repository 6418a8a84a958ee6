// The ways to correlate factors: what each promises, and the preview of them.
#include "base/ColumnShelf.h"
#include "base/TextWriter.h"
#include "base/uniformRandom.h"
#include "correlation/CorrelationPreview.h"
#include "correlation/DiagonalBand.h"
#include "correlation/ImanConover.h"
#include "correlation/SteinRanks.h"
#include "correlation/rankCorrelation.h"
#include "factors/FactorList.h"
#include "factors/Normal.h"
#include "factors/Uniform.h"
#include "factors/makeFactor.h"
#include "support/FailingCalls.h"
#include "support/Test.h"

namespace tarvex::test {
namespace {

std::vector<double> columnOf(const RankTable& ranks, std::int32_t column, std::int32_t rows) {
  std::vector<double> values;
  for (std::int32_t row = 0; row < rows; ++row) values.push_back(ranks.rankOf(column, row));
  return values;
}

void expectPermutation(const RankTable& ranks, std::int32_t column, std::int32_t rows) {
  std::vector<int> seen(static_cast<std::size_t>(rows), 0);
  for (std::int32_t row = 0; row < rows; ++row) {
    const std::int32_t rank = ranks.rankOf(column, row);
    ASSERT_TRUE(rank >= 0 && rank < rows);
    ++seen[static_cast<std::size_t>(rank)];
  }
  EXPECT_EQ(std::count(seen.begin(), seen.end(), 1), rows) << "column " << column;
}

struct Matrix {
  const char* name;
  std::int32_t count;
  std::vector<float> values;  // by row
};

// clang-format off
const std::vector<Matrix> kAccepted{
    {"one column",    1, {1}},
    {"identity",      3, {1, 0, 0,  0, 1, 0,  0, 0, 1}},
    {"pair",          2, {1, 0.9f,  0.9f, 1}},
    {"negative pair", 2, {1, -0.7f,  -0.7f, 1}},
    {"equal columns", 2, {1, 1,  1, 1}},
    {"opposite ones", 2, {1, -1,  -1, 1}},
    {"chain",         4, {1, 0.8f, 0.4f, -0.3f,  0.8f, 1, 0.6f, 0,  0.4f, 0.6f, 1, 0.2f,  -0.3f, 0, 0.2f, 1}},
};
const std::vector<Matrix> kRefused{
    {"contradiction",   3, {1, 0.9f, 0.9f,  0.9f, 1, -0.9f,  0.9f, -0.9f, 1}},
    {"beyond 1",        2, {1, 1.01f,  1.01f, 1}},
    {"not a number",    2, {1, NAN,  NAN, 1}},
    {"equal but apart", 3, {1, 1, 0.5f,  1, 1, -0.5f,  0.5f, -0.5f, 1}},
};
// clang-format on

// 0.75 exchanges a row leave e^-1.5 of a column in place, so e^-3 of the rows of two columns still stand alike: a
// correlation of 0.05 before the method sets in, which each further column adds to.
double shuffleBias(std::int32_t columns) {
  return std::exp(-3.0) * columns / 2.0;
}

TEST(ImanConover, achievedRankCorrelation) {
  for (const Matrix& matrix : kAccepted)
    for (const std::int32_t rows : {1, 2, 250, 1000, 5000}) {
      SCOPED_TRACE(std::string(matrix.name) + ", " + std::to_string(rows) + " rows");
      const ImanConover ranks(matrix.values, matrix.count, rows);
      ASSERT_TRUE(ranks.isValid());
      for (std::int32_t i = 0; i < matrix.count; ++i) {
        expectPermutation(ranks, i, rows);
        for (std::int32_t j = 0; rows > 2 && j < i; ++j) {
          const double target = matrix.values[static_cast<std::size_t>(i * matrix.count + j)];
          EXPECT_NEAR(rankCorrelation(columnOf(ranks, i, rows), columnOf(ranks, j, rows)), target,
                      rankTolerance(target, static_cast<std::size_t>(rows)) + shuffleBias(matrix.count))
              << i << ' ' << j;
        }
      }
    }
}

TEST(ImanConover, refusedMatrices) {
  for (const Matrix& matrix : kRefused) {
    SCOPED_TRACE(matrix.name);
    EXPECT_FALSE(ImanConover(matrix.values, matrix.count).isValid());
    const ImanConover ranks(matrix.values, matrix.count, 30);
    EXPECT_FALSE(ranks.isValid());
    for (std::int32_t row = 0; row < 30; ++row) EXPECT_EQ(ranks.rankOf(1, row), 0);
  }
}

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

TEST(RankTables, aDiskThatFailsIsTold) {
  const std::size_t memory = ShelfMemory::limit();
  ShelfMemory::use(0);
  const FactorList list = listWithStein();
  const SteinRanks good(list, 6, 6, 1);
  const std::vector<float> matrix{1, 0.5f, 0.5f, 1};
  {
    FailingCalls calls;
    calls.fail(FailingCalls::kPwrite, 2, EIO);
    EXPECT_NE(SteinRanks(list, 6, 6, 1).errorText.find("Input/output error"), std::string::npos);
    calls.fail(FailingCalls::kPwrite, 4, EIO);  // the scores, two columns of places, then a sum
    const ImanConover ranks(matrix, 2, 5);
    EXPECT_FALSE(ranks.isValid());
    EXPECT_NE(ranks.errorText().find("Input/output error"), std::string::npos) << ranks.errorText();
    calls.clearFailures();
    calls.fail(FailingCalls::kPread, 1, EIO);
    std::string reason;
    EXPECT_EQ(good.ranks(0, 0, 6, reason), nullptr);
    EXPECT_NE(reason.find("Input/output error"), std::string::npos) << reason;
  }
  ShelfMemory::use(memory);
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

TEST(DiagonalBand, correlationOutOfRangeMeansIndependence) {
  for (const double rho : {1.0000001, -1.5, 7.0, kNan, -std::numeric_limits<double>::infinity()}) {
    DiagonalBand band;
    band.setCorrelation(0.4);
    band.setCorrelation(rho);
    EXPECT_EQ(band.rho(), 0.0) << rho;
    EXPECT_EQ(band.band(), 0.0) << rho;
  }
}

TEST(DiagonalBand, fullCorrelationCopiesOrMirrors) {
  DiagonalBand band;
  for (const double rho : {1.0, -1.0}) {
    band.setCorrelation(rho);
    EXPECT_EQ(band.sampleConditional(0.25), rho > 0.0 ? 0.25 : 0.75);
  }
}

// The joint distribution has uniform margins, the wanted correlation, and no mass outside of the band.
TEST(DiagonalBand, jointDistribution) {
  constexpr std::size_t kRows = 20000;
  for (const double rho : {0.05, 0.5, 0.9, 0.99, -0.1, -0.6, -0.95}) {
    DiagonalBand band;
    band.setCorrelation(rho);
    const double w = 1.0 - band.band();
    std::vector<double> parents(kRows);
    std::int32_t state = -77;
    for (double& value : parents) value = uniformRandom(state);
    std::vector<double> children = parents;
    band.sampleConditional(children);
    for (std::size_t i = 0; i < kRows; ++i) {
      const double centre = rho > 0.0 ? parents[i] : 1.0 - parents[i];
      ASSERT_GE(children[i], std::max(0.0, centre - w) - 1e-15) << rho;
      ASSERT_LE(children[i], std::min(1.0, centre + w) + 1e-15) << rho;
    }
    EXPECT_NEAR(rankCorrelation(parents, children), rho, 4.0 / std::sqrt(kRows)) << rho;
    // Kolmogorov distance at the level 0.001, and the loose tolerance of the solution.
    std::sort(children.begin(), children.end());
    double distance = 0.0;
    for (std::size_t i = 0; i < kRows; ++i)
      distance = std::max(distance, std::abs(children[i] - (static_cast<double>(i) + 0.5) / kRows));
    EXPECT_LT(distance, 1.95 / std::sqrt(kRows) + 0.001) << rho;
  }
}

// Parents at, near and beyond the ends of the unit interval come out somewhere, and at once.
TEST(DiagonalBand, endsOfTheInterval) {
  for (const double rho : {1e-6, 0.3, 0.97, 0.9999999, -1e-6, -0.3, -0.97, -0.9999999}) {
    DiagonalBand band;
    band.setCorrelation(rho);
    for (const double u : {0.0, 1e-300, 1e-9, 0.5, 1.0 - 1e-16, 1.0})
      for (int i = 0; i < 50; ++i) {
        const double child = band.sampleConditional(u);
        ASSERT_TRUE(child >= 0.0 && child <= 1.0) << rho << ' ' << u << ' ' << child;
      }
    for (const double u : {-0.2, 1.2, kNan}) band.sampleConditional(u);
  }
}

using Preview = bool (*)(Distribution&, Distribution&, double, CorrelationPreview&, std::string&);

bool ranks(Distribution& first, Distribution& second, double correlation, CorrelationPreview& preview,
           std::string& message) {
  return previewRankCorrelation(first, second, static_cast<float>(correlation), preview, message);
}

TEST(CorrelationPreview, pointsHaveTheCorrelation) {
  for (const Preview preview : {Preview(ranks), Preview(previewTreeLink)})
    for (const double target : {0.0, 0.5, 0.95, -0.8}) {
      Normal first;
      Uniform second;
      CorrelationPreview points;
      std::string message;
      ASSERT_TRUE(preview(first, second, target, points, message)) << message;
      ASSERT_EQ(points.x.size(), 250u);
      EXPECT_NEAR(rankCorrelation(points.x, points.y), target, rankTolerance(target, 250));
      for (const double y : points.y) EXPECT_TRUE(y >= 0.0 && y <= 1.0);
      EXPECT_GT(*std::max_element(points.x.begin(), points.x.end()), 1.5);  // of the normal, not of the uniform
    }
}

TEST(CorrelationPreview, refusals) {
  CorrelationPreview points;
  std::string message;
  Normal good;
  const FactorList stein = listWithStein();
  ASSERT_TRUE(previewSteinRanks(good, good, stein, 0, 1, points, message)) << message;
  EXPECT_EQ(points.x.size(), 6u);
  // b's missing value ranks last, its two equal ones in row order.
  EXPECT_NEAR(tarvex::rankCorrelation(points.x, points.y),
              tarvex::rankCorrelation({2, 0, 1, -1, 9, 8}, {4, 5, 6, 3, 1, 2}), 1e-12);
  EXPECT_NEAR(tarvex::rankCorrelation({1, 2, 2, 5}, {0, 1, 1, 0}), 0.0, 1e-12);
  EXPECT_NEAR(tarvex::rankCorrelation({1, 2, 2, 5}, {10, 20, 20, 21}), 1.0, 1e-12);
  EXPECT_EQ(tarvex::rankCorrelation({1, 1}, {1, 2}), 0.0);
  EXPECT_FALSE(previewSteinRanks(good, good, FactorList(), 0, 1, points, message));
  EXPECT_EQ(message, "The Stein correlation sample is empty.\nNo correlation can be calculated.");
  Normal flat;
  ASSERT_TRUE(flat.setStdDeviation(0.0));
  EXPECT_FALSE(previewRankCorrelation(good, good, 1.5f, points, message));
  EXPECT_EQ(message, "The Iman Conover Matrix is not positive definited.\nCorrelation's values cannot be calculated.");
  EXPECT_FALSE(previewRankCorrelation(flat, good, 0.5f, points, message));
  EXPECT_EQ(message, "I cannot calculate the inverse cumulative of the first factor");
  EXPECT_FALSE(previewTreeLink(good, flat, 0.5, points, message));
  EXPECT_EQ(message, "I cannot calculate the inverse cumulative of the second factor");
}

}  // namespace
}  // namespace tarvex::test
