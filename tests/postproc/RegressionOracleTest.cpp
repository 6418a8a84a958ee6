// RegressionStats against an independent least-squares fit by Householder QR.
#include <gtest/gtest.h>

#include <Eigen/QR>

#include "base/sortPositions.h"
#include "postproc/RegressionStats.h"
#include "postproc/ValueTables.h"
#include "support/AnalyticModels.h"
#include "support/Numbers.h"

namespace tarvex {
namespace {

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
  for (const AnalyticModel& model : {ishigamiModel(), gModel({0, 1, 4.5, 9}), additiveGroupsModel()})
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
