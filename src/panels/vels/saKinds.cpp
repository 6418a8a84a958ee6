#include "panels/vels/saKinds.h"

#include "postproc/FastStats.h"
#include "postproc/ImportanceStats.h"
#include "postproc/MorrisStats.h"
#include "postproc/RegressionStats.h"
#include "postproc/SobolStats.h"
#include "sampling/FastSampler.h"
#include "sampling/PrepConfiguration.h"

namespace tarvex {
namespace {

using enum SaForm;

template <class Stats>
const Stats& as(const SensitivityStats& stats) {
  return static_cast<const Stats&>(stats);
}

enum Kind { kOfRegression, kOfClassicFast, kOfFast, kOfMorris, kOfImportance, kOfSobol };

// clang-format off
const SaKind& saKind(Kind kind) {
  using Stats = SensitivityStats;
  static const SaKind kinds[] = {
      {"PSaRandom", "StdSA", "", {Bars, Curves}, {{"ChIndexes"}}, {{"ShIndexes"}},
       [](TextWriter& out, const Stats& stats, const TableSelection& selection, std::int32_t measure) {
         writeRegressionTable(out, as<RegressionStats>(stats), selection, measure);
       },
       {{"PSaRandomPage1", "C&hart"}, {"PSaRandomPage2", "&Table"}}},
      {"PSaFast", "FastSA", "Fast first order indexes", {Bars, Pies, Curves}, {{"ChIndexes"}}, {{"ShIndexes", {FastStats::kFirstOrder}}},
       [](TextWriter& out, const Stats& stats, const TableSelection& selection, std::int32_t) {
         writeFastTable(out, as<FastStats>(stats), selection, false);
       }},
      {"PSaFastTO", "FastSATO", "Fast first and total order indexes", {Interactions, Bars, Pies, Curves},
       {{"FastPieFirst", {FastStats::kFirstOrder}}, {"FastPieTotal", {FastStats::kTotalOrder}}},
       {{"ShFirst", {FastStats::kFirstOrder}}, {"ShTotal", {FastStats::kTotalOrder}}},
       [](TextWriter& out, const Stats& stats, const TableSelection& selection, std::int32_t) {
         writeFastTable(out, as<FastStats>(stats), selection, true);
       },
       {{"PSaFastTOPage1", "C&hart"}, {"PSaFastTOPage2", "&Table"}}},
      {"PSaMorris", "MorrisSA", "Sensitivity analysis for Morris", {Plane, Bars, Curves}, {{"ChIndexes"}}, {{"ShIndexes"}},
       [](TextWriter& out, const Stats& stats, const TableSelection& selection, std::int32_t) {
         writeMorrisTable(out, as<MorrisStats>(stats), selection);
       }},
      {"PSaImpMeasures", "Importance Measures", "Importance Indicators", {Bars, Pies, Curves}, {{"ChIndexes"}}, {{"ShIndexes"}},
       [](TextWriter& out, const Stats& stats, const TableSelection& selection, std::int32_t) {
         writeImportanceTable(out, as<ImportanceStats>(stats), selection);
       }},
      {"PSaSobol", "Sobol Indices", "Sobol indexes", {Interactions, Bars, Pies, Curves}, {{"ChIndexes"}}, {{"ShIndexes"}},
       [](TextWriter& out, const Stats& stats, const TableSelection& selection, std::int32_t) {
         writeSobolTable(out, as<SobolStats>(stats), selection);
       },
       {{"PSaSobolTOPage1", "C&hart"}, {"PSaSobolPage2", "&Table"}}},
  };
  return kinds[kind];
}
// clang-format on

}  // namespace

const char* formTitle(SaForm form) {
  switch (form) {
    case SaForm::Bars:
      return "Bars";
    case SaForm::Interactions:
      return "First order and interactions";
    case SaForm::Pies:
      return "Pies";
    case SaForm::Plane:
      return "Plane";
    case SaForm::Curves:
      break;
  }
  return "Over time";
}

const SaKind& saKindOf(const SensitivityStats& stats, const PrepConfiguration& prep) {
  switch (stats.typeId()) {
    case SensitivityStats::kRegression:
      return saKind(kOfRegression);
    case SensitivityStats::kMorris:
      return saKind(kOfMorris);
    case SensitivityStats::kImportance:
      return saKind(kOfImportance);
    case SensitivityStats::kSobol:
      return saKind(kOfSobol);
    case SensitivityStats::kFast:
      break;
  }
  const auto* const design = dynamic_cast<const FastSampler*>(prep.sampler.get());
  return saKind(design != nullptr && design->analysisMode() != FastSampler::kClassic ? kOfFast : kOfClassicFast);
}

}  // namespace tarvex
