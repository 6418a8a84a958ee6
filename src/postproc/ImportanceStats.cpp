#include "postproc/ImportanceStats.h"

#include <cstddef>

#include "postproc/MeasureSupport.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/RepLatinSampler.h"

namespace tarvex {

namespace {

constexpr double kChecked = 0.1;              // of the progress: the design's check
constexpr std::int64_t kOperationsARun = 10;  // it is read where the design has put it, far from the one before

// Whether every factor of the list has its runs, and each of them is a run of the results.
bool fits(const RepLatinSampler& design, std::int32_t factors, std::int32_t runs, const Progress& progress) {
  if (design.numFactors != factors) return false;
  if (std::int64_t{design.baseDesign()} * design.replications() != runs) return false;
  WorkPace pace(progress, std::int64_t{factors} * design.baseDesign(), design.replications());
  for (std::int32_t factor = 0; factor < factors; ++factor) {
    for (std::int32_t level = 0; level < design.baseDesign(); ++level) {
      if (!pace.step()) return false;
      const std::int32_t* sharing = design.runOf(factor, level);
      if (sharing == nullptr) return false;
      for (std::int32_t i = 0; i < design.replications(); ++i)
        if (sharing[i] < 0 || sharing[i] >= runs) return false;
    }
  }
  return true;
}

// Over L levels, each shared by R runs, with c the mean of a level's runs, m and W mean and variance of all runs:
//   (sum((c - m)^2) / L - sum((y - c)^2) / (R R L)) / W
// The second term takes off what the few runs of a level add to the variance of its mean; the measure may be negative.
// M. D. McKay, Evaluating prediction uncertainty, NUREG/CR-6311 (1995).
// `y` are the runs about their mean, so that a constant output divides 0 by 0.
bool importance(const RepLatinSampler& design, std::int32_t factor, const std::vector<double>& y, double variance,
                WorkPace& pace, double& measure) {
  const double levels = design.baseDesign();
  const double replicates = design.replications();
  double between = 0.0;
  double within = 0.0;
  for (std::int32_t level = 0; level < design.baseDesign(); ++level) {
    if (!pace.step()) return false;
    const std::int32_t* runs = design.runOf(factor, level);
    double sum = 0.0;
    for (std::int32_t i = 0; i < design.replications(); ++i) sum += y[static_cast<std::size_t>(runs[i])];
    const double levelMean = sum / replicates;
    between += levelMean * levelMean;
    for (std::int32_t i = 0; i < design.replications(); ++i) {
      const double deviation = y[static_cast<std::size_t>(runs[i])] - levelMean;
      within += deviation * deviation;
    }
  }
  measure = (between / levels - within / (replicates * replicates * levels)) / variance;
  return true;
}

}  // namespace

bool ImportanceStats::computeAll(const PrepConfiguration& prep, const OutputTable& outputs, const Progress& progress) {
  std::string reason;
  const auto* design = designFor<RepLatinSampler>(prep, outputs, reason);
  if (design == nullptr) return fail(reason);
  if (!design->hasRunTable()) return true;
  if (!fits(*design, prep.factors.factorCount(), outputs.rows(), progress.part(0.0, kChecked)))
    return fail(kDesignDamaged);
  variableCount = outputs.columns();
  makeFactorRecords(prep);
  return computeColumns(outputs, progress.part(kChecked, 1.0),
                        [&](std::int32_t variable, const double* runs, const Progress& part) {
                          return computeVariable(variable, *design, {runs, runs + outputs.rows()}, part);
                        });
}

bool ImportanceStats::computeVariable(std::int32_t variable, const RepLatinSampler& design, std::vector<double> runs,
                                      const Progress& progress) {
  const double mean = seriesMean(runs.data(), runs.size());
  double squares = 0.0;
  for (double& y : runs) {
    y -= mean;
    squares += y * y;
  }
  const double variance = squares / static_cast<double>(runs.size());
  WorkPace pace(progress, static_cast<std::int64_t>(records.size()) * design.baseDesign(),
                kOperationsARun * design.replications());
  for (std::size_t i = 0; i < records.size(); ++i)
    if (records[i].kind == FactorKind::Uncertain &&
        !importance(design, static_cast<std::int32_t>(i), runs, variance, pace,
                    records[i].values[static_cast<std::size_t>(variable)]))
      return false;
  return true;
}

}  // namespace tarvex
