#include "postproc/RegressionStats.h"

#include <Eigen/QR>

#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "base/sortPositions.h"
#include "factors/makeFactor.h"
#include "postproc/ValueTables.h"
#include "postproc/smirnovDistance.h"
#include "support/AnalyticModels.h"
#include "support/Test.h"

// RegressionStats against an independent least-squares fit by Householder QR.
namespace tarvex {
namespace {

using Stats = RegressionStats;

double valueOf(const Stats& stats, std::size_t factor, std::int32_t slot, std::int32_t variable = 0) {
  std::vector<double> values;
  EXPECT_TRUE(stats.slotValues(variable, slot, values));
  return values.at(factor);
}

// Kinds of factors, and what becomes of them.
TEST(RegressionStats, CollinearFactors) {
  TestNumbers numbers(11);
  const std::vector<double> x = numbers.column(50);
  const std::vector<double> z = numbers.column(50);
  const std::vector<double> five(50, 5.0);
  std::vector<double> y(50);
  for (std::size_t i = 0; i < x.size(); ++i) {
    y[i] = 2 * x[i] + 0.3 * z[i] + 0.5 * numbers.next();
  }
  const OutputTable outputs = tableOf({y});
  Stats twin;
  ASSERT_TRUE(twin.compute(sampleOf({x, x, z, five}, {"Uniform", "Uniform", "Uniform", "Constant"}), outputs));
  Stats alone;
  ASSERT_TRUE(alone.compute(sampleOf({x, z}), outputs));
  EXPECT_EQ(twin.activeCount, 2);
  EXPECT_EQ(twin.records[1].kind, FactorKind::Correlated);
  EXPECT_EQ(twin.records[3].kind, FactorKind::Constant);
  for (std::int32_t measure = 0; measure < Stats::kMeasures; ++measure) {
    EXPECT_EQ(valueOf(twin, 0, measure), valueOf(alone, 0, measure)) << measure;
    EXPECT_EQ(valueOf(twin, 1, measure), 0.0) << measure;
    EXPECT_EQ(valueOf(twin, 0, Stats::kRankSlots + measure), 1.0) << measure;
    EXPECT_EQ(valueOf(twin, 1, Stats::kRankSlots + measure), 4.0) << "of the zeros the first is the last";
    EXPECT_EQ(valueOf(twin, 3, Stats::kRankSlots + measure), 3.0) << measure;
  }
  // A relation that repeats a factor neither leaves nor pushes out.
  Stats relation;
  ASSERT_TRUE(relation.compute(sampleOf({x, x, z}, {"Relation", "Uniform", "Uniform"}), outputs));
  EXPECT_EQ(relation.records[0].kind, FactorKind::Relation);
  EXPECT_EQ(relation.activeCount, 2);
}

// Which measures are told to be not computed, a line a variable: 1 for computed, - for not.
std::string computedOf(const Stats& stats) {
  std::string text;
  for (std::int32_t v = 0; v < stats.variableCount; ++v) {
    for (std::int32_t m = 0; m < Stats::kMeasures; ++m) text += stats.notComputedReason(v, m).empty() ? '1' : '-';
    text += '\n';
  }
  return text;
}

// PEAR, SPEA, PCC, PRCC, SRC, SRRC, Smirnov; the same of the statistics and of what a file keeps of them.
TEST(RegressionStats, SingularMatricesAreToldFromWhatIsStored) {
  TestNumbers numbers(3);
  const std::vector<double> x = numbers.column(1000), z = numbers.column(1000), other = numbers.column(1000);
  std::vector<double> mirrored, monotone, nearly, gap = other;
  for (const double value : x) {
    mirrored.push_back(-value);
    monotone.push_back(std::exp(value));
  }
  nearly = monotone;  // but for two runs: rounds to 1 at six digits
  std::vector<double> sorted = x;
  std::sort(sorted.begin(), sorted.end());
  std::swap(nearly[std::find(x.begin(), x.end(), sorted[500]) - x.begin()],
            nearly[std::find(x.begin(), x.end(), sorted[501]) - x.begin()]);
  gap[7] = std::numeric_limits<double>::quiet_NaN();
  const struct {
    const char* name;
    Columns factors, outputs;
    const char* computed;
  } rows[] = {
      {"regular", {x, z}, {other, numbers.column(1000)}, "1111111\n1111111\n"},
      {"mirrored factor", {x, mirrored, z}, {other, z}, "-------\n-------\n"},
      {"raw, in the middle", {x, z}, {other, x, gap}, "1-1-1--\n-------\n-------\n"},
      {"ranks, in the middle", {x, z}, {other, monotone, gap}, "111111-\n1-1-1--\n1-1-1--\n"},
      {"ranks of a single factor", {x}, {monotone}, "1-1-1--\n"},
      {"nearly monotone", {x}, {nearly}, "1111111\n"},
      {"a gap", {x, z}, {gap, other}, "1111111\n1111111\n"},
      {"one run", {{0.5}}, {{2.0}}, "111111-\n"},
  };
  for (const auto& row : rows) {
    Stats stats;
    ASSERT_TRUE(stats.compute(sampleOf(row.factors), tableOf(row.outputs))) << row.name;
    TextWriter out;
    stats.write(out);
    TextReader in = TextReader::fromText(out.text());
    Stats back;
    back.read(in);
    EXPECT_EQ(computedOf(stats), row.computed) << row.name;
    if (std::string(row.name) == "mirrored factor") {
      EXPECT_TRUE(valueOf(stats, 2, Stats::kSmirnov) == 1.0 && valueOf(stats, 2, Stats::kPear, 1) == 0.0);
    }
    EXPECT_EQ(computedOf(back), row.computed) << row.name;
  }
}

TEST(RegressionStats, Refusals) {
  const OutputTable outputs = tableOf({{1, 2, 3}});
  OutputTable none;
  ASSERT_TRUE(none.allocate(1));
  PrepConfiguration noRuns = sampleOf({{1}});
  noRuns.samples.clear();
  ASSERT_TRUE(noRuns.samples.allocate(1));
  PrepConfiguration wide = sampleOf({{1, 2, 3}});
  wide.factors.addFactor(makeFactor("Uniform"));
  const struct {
    PrepConfiguration prep;
    const OutputTable& outputs;
    const char* text;
  } rows[] = {
      {sampleOf({{1, 1, 1}, {2, 2, 2}}, {"Constant", "Relation"}), outputs, "All input factors are constant"},
      {sampleOf({{1, 2}}), outputs, "The sample has 2 runs, the results have 3."},
      {std::move(wide), outputs, "The sample has 1 columns, the list has 2 factors."},
      {std::move(noRuns), none, "There are no runs to analyse."},
  };
  for (const auto& row : rows) {
    Stats stats;
    ASSERT_TRUE(stats.compute(sampleOf({{1, 2, 3}}), outputs));
    EXPECT_FALSE(stats.compute(row.prep, row.outputs));
    EXPECT_EQ(stats.errorText, row.text);
    EXPECT_TRUE(!stats.computed && stats.records.empty());
  }
}

TEST(RegressionStats, GapsStayInTheirVariable) {
  TestNumbers numbers(8);
  const std::vector<double> x = numbers.column(30);
  const std::vector<double> z = numbers.column(30);
  std::vector<double> gap = z;
  gap[7] = kNan;
  Stats stats;
  ASSERT_TRUE(stats.compute(sampleOf({x, z}), tableOf({gap, numbers.column(30)})));
  for (std::int32_t measure = 0; measure < Stats::kMeasures; ++measure) {
    EXPECT_TRUE(std::isnan(valueOf(stats, 0, measure, 0))) << measure;
    EXPECT_FALSE(std::isnan(valueOf(stats, 0, measure, 1))) << measure;
  }
}

TEST(SmirnovDistance, NeedsTwoSets) {
  EXPECT_EQ(smirnovDistance({0, 1}, {1, 1}), -1.0);
  EXPECT_EQ(smirnovDistance({0, 1}, {0, 0}), -1.0);
}

using Eigen::Index;
using Eigen::MatrixXd;
using Eigen::VectorXd;

struct Fit {
  VectorXd standardised;  // coefficients of the standardised columns
  double determination = 0.0;
};

// Columns brought to mean 0 and length 1.
MatrixXd standardise(MatrixXd columns) {
  columns.rowwise() -= columns.colwise().mean().eval();
  columns.array().rowwise() /= columns.colwise().norm().array().eval();
  return columns;
}

Fit fit(const MatrixXd& x, const VectorXd& y) {
  const MatrixXd xs = standardise(x);
  const VectorXd ys = standardise(y);
  Fit result;
  result.standardised = xs.householderQr().solve(ys);
  result.determination = 1.0 - (ys - xs * result.standardised).squaredNorm();
  return result;
}

// The correlation of what a factor and the output have beyond the other factors.
double partial(const MatrixXd& x, const VectorXd& y, Index factor) {
  MatrixXd others(x.rows(), x.cols() - 1);
  for (Index j = 0, k = 0; j < x.cols(); ++j)
    if (j != factor) others.col(k++) = x.col(j);
  others = standardise(others);
  const auto residual = [&others](const VectorXd& column) {
    const VectorXd ys = standardise(column);
    return VectorXd(ys - others * others.householderQr().solve(ys));
  };
  const VectorXd a = residual(x.col(factor));
  const VectorXd b = residual(y);
  return a.dot(b) / (a.norm() * b.norm());
}

MatrixXd ranked(const MatrixXd& columns) {
  MatrixXd ranks(columns.rows(), columns.cols());
  for (Index j = 0; j < columns.cols(); ++j) {
    const std::vector<double> column(columns.col(j).data(), columns.col(j).data() + columns.rows());
    std::vector<std::int32_t> own;
    EXPECT_TRUE(ranksOf(column, own));
    for (Index i = 0; i < columns.rows(); ++i) ranks(i, j) = own[static_cast<std::size_t>(i)] + 1;
  }
  return ranks;
}

double measure(const RegressionStats& stats, std::int32_t slot, Index factor) {
  return stats.records[static_cast<std::size_t>(factor)].values[static_cast<std::size_t>(slot)];
}

// Everything on one kind of data: `kind` 0 raw, 1 ranks.
void expectFit(const RegressionStats& stats, std::int32_t kind, const MatrixXd& x, const VectorXd& y) {
  constexpr double kTolerance = 1e-9;
  const Fit expected = fit(x, y);
  for (Index j = 0; j < x.cols(); ++j) {
    const double pearson = standardise(x.col(j)).col(0).dot(standardise(y).col(0));
    EXPECT_TRUE(test::agrees(measure(stats, RegressionStats::kPear + kind, j), pearson, 0, kTolerance));
    EXPECT_TRUE(test::agrees(measure(stats, RegressionStats::kPcc + kind, j), partial(x, y, j), 0, kTolerance));
    EXPECT_TRUE(test::agrees(measure(stats, RegressionStats::kSrc + kind, j), expected.standardised(j), 0, kTolerance));
  }
  double found[2], adjusted[2];
  ASSERT_TRUE(stats.determination(0, found[0], found[1]));
  ASSERT_TRUE(stats.determinationAdjusted(0, adjusted[0], adjusted[1]));
  EXPECT_TRUE(test::agrees(found[kind], expected.determination, 0, kTolerance));
  const auto n = static_cast<double>(x.rows());
  EXPECT_TRUE(test::agrees(
      adjusted[kind], 1.0 - (1.0 - expected.determination) * (n - 1.0) / (n - static_cast<double>(x.cols())), 0, 1e-8));
}

TEST(RegressionOracle, LeastSquaresFit) {
  TestNumbers numbers(2024);
  for (const AnalyticModel& model : {ishigamiModel(), gModel({0, 1, 4.5, 9})})
    for (const Index runs : {Index{12}, Index{200}, Index{5000}}) {
      SCOPED_TRACE(model.name + ", " + std::to_string(runs) + " runs");
      MatrixXd x(runs, model.inputs);
      VectorXd y(runs);
      Columns columns(static_cast<std::size_t>(model.inputs), std::vector<double>(static_cast<std::size_t>(runs)));
      std::vector<double> row(columns.size()), outputs;
      for (Index i = 0; i < runs; ++i) {
        for (std::size_t j = 0; j < row.size(); ++j) {
          // Each input leans on the one before it, so that the fit has something to disentangle.
          const double lean = j == 0 ? numbers.next() : 0.4 * (row[j - 1] - model.lower) / (model.upper - model.lower);
          row[j] = model.lower + (model.upper - model.lower) * (j == 0 ? lean : lean + 0.6 * numbers.next());
          x(i, static_cast<Index>(j)) = columns[j][static_cast<std::size_t>(i)] = row[j];
        }
        outputs.push_back(y(i) = model.evaluate(row.data()));
      }
      RegressionStats stats;
      ASSERT_TRUE(stats.compute(sampleOf(columns), tableOf({outputs})));
      expectFit(stats, 0, x, y);
      expectFit(stats, 1, ranked(x), ranked(y));
    }
}

}  // namespace
}  // namespace tarvex
