#include "postproc/FastStats.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "postproc/CurveSpectrum.h"
#include "postproc/MeasureSupport.h"
#include "sampling/FastSampler.h"
#include "sampling/PrepConfiguration.h"

namespace tarvex {

namespace {

constexpr std::int32_t kHarmonics = 4;  // of a frequency that count as its effect
constexpr double kLoaded = 0.1;         // of the progress of a curve: its runs are folded

}  // namespace

void FastStats::makeRecords(const PrepConfiguration& prep, const FastSampler& design) {
  makeFactorRecords(prep);
  if (design.analysisMode() == FastSampler::kGroups) {
    std::erase_if(records, [&](const IndexRecord& record) { return design.isInGroup(record.name); });
    std::vector<IndexRecord> groups(design.groupNames().size());
    for (std::size_t i = 0; i < groups.size(); ++i) {
      groups[i].name = design.groupNames()[i];
      groups[i].values.assign(static_cast<std::size_t>(variableCount) * kSlots, 0.0);
    }
    records.insert(records.begin(), std::move_iterator(groups.begin()), std::move_iterator(groups.end()));
  }
  recordCount = static_cast<std::int32_t>(records.size());
}

bool FastStats::checkDesign(const FastSampler& design) {
  const std::vector<FastBlock>& table = design.designTable();
  if (table.empty()) return fail(kDesignMissing);
  const auto tested = std::count_if(records.begin(), records.end(),
                                    [](const IndexRecord& record) { return record.kind == FactorKind::Uncertain; });
  if (static_cast<std::size_t>(tested) != table.size()) return fail(kDesignDamaged);
  std::int64_t runs = 0;
  for (const FastBlock& block : table) {
    if (design.analysisMode() == FastSampler::kClassic) {
      if (block.curveLength != design.numSamples) return fail(kDesignDamaged);
      runs = design.numSamples;
    } else if (block.resamples >= 1) {
      // A curve has two runs for each turn of the fourth harmonic, and one.
      const std::int64_t length = 2 * kHarmonics * std::int64_t{block.frequency} + 1;
      if (block.frequency < 1 || block.curveLength != length) return fail(kDesignDamaged);
      runs += std::int64_t{block.resamples} * block.curveLength;
      if (runs > design.numSamples) return fail(kDesignDamaged);
    }
  }
  return runs == design.numSamples || fail(kDesignDamaged);
}

bool FastStats::hasAny(Slot slot) const {
  for (const IndexRecord& record : records)
    for (auto at = static_cast<std::size_t>(slot); at < record.values.size(); at += kSlots)
      if (record.kind == FactorKind::Uncertain && record.values[at] != 0.0) return true;
  return false;
}

std::string FastStats::notComputedReason(std::int32_t, std::int32_t slot) const {
  const bool isClassic = hasAny(kFirstOrder) && !hasTotals();
  return slot == kTotalOrder && isClassic ? "the classic test has no total order" : "";
}

bool FastStats::computeAll(const PrepConfiguration& prep, const OutputTable& outputs, const Progress& progress) {
  std::string reason;
  const auto* design = designFor<FastSampler>(prep, outputs, reason);
  if (design == nullptr) return fail(reason);
  variableCount = outputs.columns();
  makeRecords(prep, *design);
  if (!checkDesign(*design)) return false;
  CurveSpectrum spectrum;
  return computeColumns(outputs, progress, [&](std::int32_t variable, const double* runs, const Progress& part) {
    return design->analysisMode() == FastSampler::kClassic ? computeClassic(variable, *design, runs, spectrum, part)
                                                           : computeBlocks(variable, *design, runs, spectrum, part);
  });
}

// First order of factor i with frequency w on the one curve of n runs, with S the spectrum of the output:
//   S_i = (S(w) + S(2w) + S(3w) + S(4w)) / (sum of squares / (n - 1))
// R. I. Cukier, C. M. Fortuin, K. E. Shuler, A. G. Petschek, J. H. Schaibly, J. Chem. Phys. 59 (1973) 3873.
bool FastStats::computeClassic(std::int32_t variable, const FastSampler& design, const double* runs,
                               CurveSpectrum& spectrum, const Progress& progress) {
  if (!spectrum.load(runs, design.numSamples, progress.part(0.0, kLoaded))) return false;
  const Progress part = progress.part(kLoaded, 1.0);
  const long double total = spectrum.variance();
  std::size_t block = 0;
  for (IndexRecord& record : records) {
    if (record.kind != FactorKind::Uncertain) continue;
    if (!part.report(block, design.designTable().size())) return false;
    const long double effect = spectrum.harmonics(design.designTable()[block++].frequency);
    record.values[static_cast<std::size_t>(variable) * kSlots + kFirstOrder] =
        total == 0.0L ? 0.0 : static_cast<double>(effect / total);
  }
  return true;
}

// First and total order of a factor or group with frequency w on its own block of curves; sums run over the curves:
//   S_i = sum(S(w) + S(2w) + S(3w) + S(4w)) / sum(D),   ST_i = 1 - sum(S(1) + ... + S(w / 2)) / sum(D)
// with D the variance of a curve about its own mean.
// A. Saltelli, S. Tarantola, K. P.-S. Chan, Technometrics 41 (1999) 39.
bool FastStats::computeBlocks(std::int32_t variable, const FastSampler& design, const double* runs,
                              CurveSpectrum& spectrum, const Progress& progress) {
  const double* next = runs;
  const double* const end = next + design.numSamples;
  const auto done = [&] { return static_cast<double>(next - runs) / static_cast<double>(end - runs); };
  std::size_t unit = 0;
  for (IndexRecord& record : records) {
    if (record.kind != FactorKind::Uncertain) continue;
    const FastBlock& block = design.designTable()[unit++];
    long double others = 0.0L;
    long double effect = 0.0L;
    long double total = 0.0L;
    for (std::int32_t curve = 0; curve < block.resamples; ++curve) {
      const double before = done();
      const double* const from = std::exchange(next, next + block.curveLength);
      const Progress part = progress.part(before, done());
      if (!spectrum.load(from, block.curveLength, part.part(0.0, kLoaded))) return false;
      if (!spectrum.addUpTo(block.frequency / 2, others, part.part(kLoaded, 1.0))) return false;
      effect += spectrum.harmonics(block.frequency);
      total += spectrum.variance();
    }
    if (total == 0.0L) continue;
    double* slots = record.values.data() + static_cast<std::size_t>(variable) * kSlots;
    slots[kFirstOrder] = static_cast<double>(effect / total);
    slots[kTotalOrder] = static_cast<double>(1.0L - others / total);
  }
  return true;
}

void FastStats::writeHeader(TextWriter& out) const {
  SensitivityStats::writeHeader(out);
  out << recordCount << '\n';
}

void FastStats::readHeader(TextReader& in) {
  SensitivityStats::readHeader(in);
  in.expect("the number of records") >> recordCount;
}

}  // namespace tarvex
