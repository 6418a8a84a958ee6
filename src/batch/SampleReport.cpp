#include <fmt/format.h>

#include "batch/CorrelationTable.h"
#include "batch/Reports.h"
#include "batch/TextTable.h"
#include "sampling/FastSampler.h"
#include "sampling/MorrisSampler.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/RepLatinSampler.h"
#include "sampling/SobolSampler.h"

namespace tarvex {

namespace {

void describe(std::ostream& out, const FastSampler& sampler) {
  static constexpr const char* kModes[] = {"classic, first order effects", "extended, first and total order effects",
                                           "extended on groups, first and total order effects"};
  out << "Test: " << kModes[sampler.analysisMode()] << '\n';
  for (const std::string& group : sampler.groupNames()) {
    out << "Group " << group << ":";
    for (std::int32_t i = 0; i < sampler.groupSize(group); ++i) out << ' ' << *sampler.groupElement(group, i);
    out << '\n';
  }
  if (sampler.designTable().empty()) return;
  TextTable table;
  table.addColumn("block");
  table.addColumn("frequency");
  table.addColumn("curves");
  table.addColumn("runs a curve");
  table.addColumn("runs");
  int number = 0;
  for (const FastBlock& block : sampler.designTable())
    table.addRow({std::to_string(++number), std::to_string(block.frequency), std::to_string(block.resamples),
                  std::to_string(block.curveLength), std::to_string(block.blockLength)});
  out << '\n';
  table.print(out);
}

void describe(std::ostream& out, const MorrisSampler& sampler) {
  out << sampler.trajectories() << " trajectories on " << sampler.levels() << " levels\n";
}

void describe(std::ostream& out, const RepLatinSampler& sampler) {
  out << sampler.replications() << " replications of a base design of " << sampler.baseDesign() << " runs\n";
}

void describe(std::ostream& out, const SobolSampler& sampler) {
  if (sampler.baseSize() <= 0) return;
  out << fmt::format("{} blocks of {} runs; ", sampler.numSamples / sampler.baseSize(), sampler.baseSize());
  if (sampler.designKind() == SobolSampler::kFirstAndTotal)
    out << "first and total order indices\n";
  else
    out << "indices up to order " << sampler.order() << '\n';
}

void describeMethod(std::ostream& out, const Sampler& sampler) {
  out << "Method: " << sampler.methodName << ", " << sampler.numSamples << " runs";
  const std::int32_t id = sampler.methodId;
  if (id != kFixed && id != kLpTau && id != kSobol) out << ", seed " << sampler.seed;
  out << '\n';
  if (const auto* fast = dynamic_cast<const FastSampler*>(&sampler))
    describe(out, *fast);
  else if (const auto* morris = dynamic_cast<const MorrisSampler*>(&sampler))
    describe(out, *morris);
  else if (const auto* replicated = dynamic_cast<const RepLatinSampler*>(&sampler))
    describe(out, *replicated);
  else if (const auto* sobol = dynamic_cast<const SobolSampler*>(&sampler))
    describe(out, *sobol);
}

// The statistics of the record; those of a table without any are made for display.
void reportStatistics(std::ostream& out, const PrepConfiguration& prep) {
  SampleStatistics made;
  const SampleStatistics* statistics = prep.sampleStatistics ? &*prep.sampleStatistics : &made;
  if (!prep.sampleStatistics) made.compute(prep.samples);
  if (statistics->size() != prep.factors.factorCount()) return;

  std::vector<std::string> varying;  // constants have no correlation to look at
  std::vector<std::int32_t> columns;
  TextTable table;
  table.addColumn("factor", TextTable::Align::Left);
  for (const char* heading : {"mean", "std. dev.", "skewness", "kurtosis"}) table.addColumn(heading);
  for (std::int32_t i = 0; i < statistics->size(); ++i) {
    const std::string& name = prep.factors.factor(i).name;
    if (!prep.factors.factor(i).isConstant()) {
      varying.push_back(name);
      columns.push_back(i);
    }
    table.addRow({name, cell(statistics->mean(i)), cell(statistics->stdDev(i)), cell(statistics->skewness(i)),
                  cell(statistics->kurtosis(i))});
  }
  out << "\nThe sample's moments\n";
  table.print(out);
  out << "\nThe sample's correlations\n";
  printCorrelations(out, varying, [&](std::int32_t i, std::int32_t j) {
    return statistics->correlation(columns[static_cast<std::size_t>(i)], columns[static_cast<std::size_t>(j)]);
  });
}

}  // namespace

void reportSample(std::ostream& out, const PrepConfiguration& prep) {
  if (prep.external == 1)
    out << "External sample\n";
  else if (prep.sampler)
    describeMethod(out, *prep.sampler);
  out << fmt::format("{} of {}, listed by {}", counted(prep.samples.rows(), "run"),
                     counted(prep.samples.columns(), "factor"), prep.samples.order() == 0 ? "run" : "factor");
  if (!prep.sampleFile.empty()) out << ", file " << prep.sampleFile;
  out << "\n\n";
  reportFactors(out, prep.factors);
  if (prep.samples.rows() > 0) reportStatistics(out, prep);
}

}  // namespace tarvex
