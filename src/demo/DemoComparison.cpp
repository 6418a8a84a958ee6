#include "demo/DemoComparison.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <functional>

#include "app/ProjectConfiguration.h"
#include "postproc/FastStats.h"
#include "postproc/MorrisStats.h"
#include "postproc/RegressionStats.h"
#include "postproc/SobolStats.h"
#include "postproc/TestFunctions.h"
#include "report/TextTable.h"
#include "sampling/FastSampler.h"
#include "sampling/MorrisSampler.h"
#include "sampling/RepLatinSampler.h"
#include "sampling/SobolSampler.h"

namespace tarvex {

namespace {

// Between a random estimate and its expectation: one in 370 lies further away.
constexpr double kStandardErrors = 3.0;

struct ExactCase {
  std::string name;
  VarianceDecomposition exact;
  std::vector<double> g;  // coefficients, of a g function
};

ExactCase gCase(const char* name, const std::vector<double>& a) {
  return {name, gDecomposition(a), a};
}

// As in the equations of the delivered models.
std::vector<ExactCase> exactCases() {
  return {{"Ishigami", ishigamiDecomposition(7.0, 0.1), {}},  {"Linear", linearDecomposition({1, 2, 3, 4, 5}), {}},
          gCase("SobolG0", {0, 0, 0, 0, 0, 0, 0, 0}),         gCase("SobolG1", {0, 1, 4.5, 9, 99, 99, 99, 99}),
          gCase("SobolG2", {99, 99, 99, 99, 99, 99, 99, 99}), gCase("SobolG3", {0, 9, 99})};
}

using OfInput = std::function<double(int input)>;

// A row a factor: the value of a slot, what it should be and the tolerance.
Comparison compareFactors(const std::string& title, const SensitivityStats& statistics, std::int32_t slot,
                          const OfInput& exact, const OfInput& tolerance, const std::string& basis) {
  Comparison comparison{title, {}, basis};
  std::vector<double> values;
  if (!statistics.slotValues(0, slot, values)) return comparison;
  for (std::size_t i = 0; i < values.size(); ++i) {
    const int input = static_cast<int>(i);
    comparison.rows.push_back({statistics.records[i].name, values[i], exact(input), tolerance(input)});
  }
  return comparison;
}

OfInput always(double tolerance) {
  return [tolerance](int) { return tolerance; };
}

// Mean and variance of the output, of which `runs` runs are independent.
Comparison compareMoments(const UaStats& statistics, const VarianceDecomposition& exact, double runs,
                          const std::string& whichRuns) {
  const double variance = statistics.std(0) * statistics.std(0);
  const double errorOfMean = statistics.std(0) / std::sqrt(runs);
  const double errorOfVariance = variance * std::sqrt((statistics.kurtosis(0) + 2.0) / runs);
  return {"Moments",
          {{"mean", statistics.mean(0), exact.mean, kStandardErrors * errorOfMean},
           {"variance", variance, exact.variance(), kStandardErrors * errorOfVariance}},
          fmt::format("three standard errors of {} independent runs, {}", runs, whichRuns)};
}

std::vector<Comparison> compareSobol(const SobolSampler& design, const SobolStats& statistics, const UaStats& moments,
                                     const VarianceDecomposition& exact) {
  const double base = design.baseSize();
  const std::string basis = fmt::format(
      "the standard error of a mean of {} products of standardised outputs, which quasi-random runs stay below", base);
  const OfInput tolerance = always(1.0 / std::sqrt(base));
  return {compareMoments(moments, exact, base, "as many as a block of the design has"),
          compareFactors(
              "First order indices", statistics, SobolStats::kIndex, [&](int i) { return exact.firstOrder(i); },
              tolerance, basis),
          compareFactors(
              "Total order indices", statistics, SobolStats::kTotal, [&](int i) { return exact.totalOrder(i); },
              tolerance, basis)};
}

// Four harmonics of a factor's frequency count. Those of |4 x - 2| above them hold 1 - 96 / pi^4 of its variance, which
// the first order index lacks and which may reach into the total ones of the others.
std::vector<Comparison> compareFast(const FastSampler& design, const FastStats& statistics, const UaStats& moments,
                                    const VarianceDecomposition& exact) {
  constexpr double kLostShare = 0.0145;
  const double curve = design.designTable().empty() ? 1.0 : design.designTable().front().curveLength;
  const std::string basis = "1.45 % of the variance, which lie above the four harmonics that a curve counts";
  return {compareMoments(moments, exact, curve, "as many as a curve has"),
          compareFactors(
              "First order indices", statistics, FastStats::kFirstOrder, [&](int i) { return exact.firstOrder(i); },
              always(kLostShare), basis),
          compareFactors(
              "Total order indices", statistics, FastStats::kTotalOrder, [&](int i) { return exact.totalOrder(i); },
              always(kLostShare), basis)};
}

// The runs lie on the design's grid: their moments are not those of the function.
std::vector<Comparison> compareMorris(const MorrisSampler& design, const MorrisStats& statistics,
                                      const std::vector<double>& a) {
  const double trajectories = design.trajectories();
  const auto effects = [&](int i) {
    return gEffectMoments(a, static_cast<std::size_t>(i), static_cast<int>(design.levels()));
  };
  const std::string basis = fmt::format("three standard errors of {} trajectories", trajectories);
  return {
      compareFactors(
          "Mean absolute effects on the grid", statistics, MorrisStats::kMean, [&](int i) { return effects(i).mean; },
          [&](int i) { return kStandardErrors * effects(i).spread / std::sqrt(trajectories); }, basis),
      compareFactors(
          "Spread of the effects", statistics, MorrisStats::kSigma, [&](int i) { return effects(i).spread; },
          [&](int i) {
            const EffectMoments exact = effects(i);
            return kStandardErrors * exact.spread * std::sqrt((exact.kurtosis - 1.0) / (4.0 * trajectories));
          },
          basis)};
}

// The spread of the level means, its product with the effect, and what effects of like shape lend to each other: a
// replicate's shuffle exchanges 0.75 pairs a run, so that two columns keep exp(-3) of their places together.
std::vector<Comparison> compareImportance(const RepLatinSampler& design, const SensitivityStats& statistics,
                                          const UaStats& moments, const VarianceDecomposition& exact) {
  const double levels = design.baseDesign();
  const double replicates = design.replications();
  const auto tolerance = [&](int i) {
    const double own = exact.firstOrder(i);
    double sum = kStandardErrors * (std::sqrt(2.0 / levels) / replicates + 2.0 * std::sqrt(own / levels / replicates));
    for (int j = 0; j < exact.inputs; ++j)
      if (j != i) sum += 2.0 * std::exp(-3.0) * std::sqrt(own * exact.firstOrder(j));
    return sum;
  };
  return {compareMoments(moments, exact, levels, "as many as the base design has"),
          compareFactors(
              "Importance", statistics, 0, [&](int i) { return exact.firstOrder(i); }, tolerance,
              "three standard errors of the means over a level, and what the shuffle leaves of the base design")};
}

// Coefficients of a linear model come out exactly. What varies is the deviation of the output, by the correlations that
// the columns happen to have.
std::vector<Comparison> compareRegression(const RegressionStats& statistics, const UaStats& moments,
                                          const VarianceDecomposition& exact) {
  const double runs = moments.sampleSize();
  double squares = 0.0;
  for (int i = 0; i < exact.inputs; ++i) squares += exact.firstOrder(i) * exact.firstOrder(i);
  const OfInput coefficient = [&](int i) { return std::sqrt(exact.firstOrder(i)); };
  double determined = 0.0;
  double ofRanks = 0.0;
  if (!statistics.determination(0, determined, ofRanks)) return {};
  constexpr double kSixDigits = 1e-5;  // to which factors enter the equation
  return {compareMoments(moments, exact, runs, "a bound for the strata of a Latin hypercube"),
          compareFactors(
              "Standardised regression coefficients (SRC)", statistics, RegressionStats::kSrc, coefficient,
              [&](int i) { return kStandardErrors * coefficient(i) * std::sqrt((1.0 - squares) / (2.0 * runs)); },
              "three standard errors of the output's deviation"),
          compareFactors(
              "Correlation coefficients (PEAR)", statistics, RegressionStats::kPear, coefficient,
              [&](int i) { return kStandardErrors * (1.0 - exact.firstOrder(i)) / std::sqrt(runs); },
              "three standard errors of a correlation"),
          {"Determination", {{"R squared", determined, 1.0, kSixDigits}}, "factors enter an equation with six digits"}};
}

std::vector<Comparison> compare(const ExactCase& which, const ProjectConfiguration& project) {
  const Sampler* design = project.prep.sampler.get();
  const SensitivityStats* statistics = project.vels.sensitivity.get();
  const UaStats& moments = project.vels.uncertainty;
  if (design == nullptr || statistics == nullptr) return {};
  if (const auto* sobol = dynamic_cast<const SobolSampler*>(design))
    return compareSobol(*sobol, static_cast<const SobolStats&>(*statistics), moments, which.exact);
  if (const auto* fast = dynamic_cast<const FastSampler*>(design))
    return compareFast(*fast, static_cast<const FastStats&>(*statistics), moments, which.exact);
  if (const auto* morris = dynamic_cast<const MorrisSampler*>(design))
    return compareMorris(*morris, static_cast<const MorrisStats&>(*statistics), which.g);
  if (const auto* replicated = dynamic_cast<const RepLatinSampler*>(design))
    return compareImportance(*replicated, *statistics, moments, which.exact);
  if (const auto* regression = dynamic_cast<const RegressionStats*>(statistics))
    return compareRegression(*regression, moments, which.exact);
  return {};
}

}  // namespace

std::vector<Comparison> compareWithExact(const std::string& caseName, const ProjectConfiguration& project) {
  for (const ExactCase& which : exactCases())
    if (which.name == caseName) return compare(which, project);
  return {};
}

void reportComparison(std::ostream& out, const Comparison& comparison) {
  // As many decimals as show two digits of the smallest tolerance.
  int decimals = 4;
  for (const Comparison::Row& row : comparison.rows)
    if (row.tolerance > 0.0) decimals = std::max(decimals, 1 - static_cast<int>(std::floor(std::log10(row.tolerance))));
  TextTable table;
  table.addColumn("", TextTable::Align::Left);
  for (const char* heading : {"computed", "exact", "difference", "tolerance"}) table.addColumn(heading);
  for (const Comparison::Row& row : comparison.rows)
    table.addRow({row.name, fmt::format("{:.{}f}", row.computed, decimals), fmt::format("{:.{}f}", row.exact, decimals),
                  fmt::format("{:+.{}f}", row.computed - row.exact, decimals),
                  fmt::format("{:.{}f}", row.tolerance, decimals)});
  out << comparison.title << '\n';
  table.print(out);
  out << "  Tolerance: " << comparison.basis << ".\n";
}

}  // namespace tarvex
