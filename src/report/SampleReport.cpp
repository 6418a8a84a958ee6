#include <fmt/format.h>

#include "report/CorrelationReport.h"
#include "report/Document.h"
#include "report/Reports.h"
#include "sampling/FastSampler.h"
#include "sampling/MorrisSampler.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/RepLatinSampler.h"
#include "sampling/SobolSampler.h"

namespace tarvex {

namespace {

std::string settingsOf(const FastSampler& sampler) {
  static constexpr const char* kModes[] = {"classic, first order effects", "extended, first and total order effects",
                                           "extended on groups, first and total order effects"};
  std::string text = fmt::format("Test: {}", kModes[sampler.analysisMode()]);
  for (const std::string& group : sampler.groupNames()) {
    text += fmt::format("\nGroup {}:", group);
    for (std::int32_t i = 0; i < sampler.groupSize(group); ++i) text += ' ' + *sampler.groupElement(group, i);
  }
  return text;
}

std::string settingsOf(const MorrisSampler& sampler) {
  return fmt::format("{} trajectories on {} levels", sampler.trajectories(), sampler.levels());
}

std::string settingsOf(const RepLatinSampler& sampler) {
  return fmt::format("{} replications of a base design of {} runs", sampler.replications(), sampler.baseDesign());
}

std::string settingsOf(const SobolSampler& sampler) {
  if (sampler.baseSize() <= 0) return {};
  const std::string indices = sampler.designKind() == SobolSampler::kFirstAndTotal
                                  ? "first and total order indices"
                                  : fmt::format("indices up to order {}", sampler.order());
  return fmt::format("{} blocks of {} runs; {}", sampler.numSamples / sampler.baseSize(), sampler.baseSize(), indices);
}

// What distinguishes the method's design; empty where the counts say all.
std::string settingsOf(const Sampler& sampler) {
  if (const auto* fast = dynamic_cast<const FastSampler*>(&sampler)) return settingsOf(*fast);
  if (const auto* morris = dynamic_cast<const MorrisSampler*>(&sampler)) return settingsOf(*morris);
  if (const auto* replicated = dynamic_cast<const RepLatinSampler*>(&sampler)) return settingsOf(*replicated);
  if (const auto* sobol = dynamic_cast<const SobolSampler*>(&sampler)) return settingsOf(*sobol);
  return {};
}

std::string methodText(const Sampler& sampler) {
  std::string text = fmt::format("Method: {}, {} runs", sampler.methodName, sampler.numSamples);
  const std::int32_t id = sampler.methodId;
  if (id != kFixed && id != kLpTau && id != kSobol) text += fmt::format(", seed {}", sampler.seed);
  const std::string settings = settingsOf(sampler);
  return settings.empty() ? text : text + '\n' + settings;
}

void reportBlocks(Document& out, const FastSampler& sampler) {
  if (sampler.designTable().empty()) return;
  Table table;
  for (const char* heading : {"block", "frequency", "curves", "runs a curve", "runs"}) table.addColumn(heading);
  int number = 0;
  for (const FastBlock& block : sampler.designTable())
    table.addRow({std::to_string(++number), std::to_string(block.frequency), std::to_string(block.resamples),
                  std::to_string(block.curveLength), std::to_string(block.blockLength)});
  out.add(Caption{Caption::Of::Table, "Blocks of the design"});
  out.add(std::move(table));
}

}  // namespace

void reportDesign(Document& out, const PrepConfiguration& prep, SampleFileName file) {
  std::string text = prep.external == 1 ? "External sample\n" : prep.sampler ? methodText(*prep.sampler) + '\n' : "";
  text += fmt::format("{} of {}, listed by {}", counted(prep.samples.rows(), "run"),
                      counted(prep.samples.columns(), "factor"), prep.samples.order() == 0 ? "run" : "factor");
  if (file == SampleFileName::Told && !prep.sampleFile.empty()) text += ", file " + prep.sampleFile;
  out.add(Paragraph{std::move(text)});
  if (const auto* fast = dynamic_cast<const FastSampler*>(prep.sampler.get())) reportBlocks(out, *fast);
}

void reportSampleStatistics(Document& out, const PrepConfiguration& prep) {
  SampleStatistics made;
  const SampleStatistics* statistics = prep.sampleStatistics ? &*prep.sampleStatistics : &made;
  if (!prep.sampleStatistics && !made.compute(prep.samples)) {
    out.add(Paragraph{"The sample's statistics can't be computed.\n" + prep.samples.errorText()});
    return;
  }
  if (statistics->size() != prep.factors.factorCount()) return;

  std::vector<std::string> varying;  // constants have no correlation to look at
  std::vector<std::int32_t> columns;
  Table table;
  table.addColumn("factor", Table::Align::Left);
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
  out.add(Heading{"The sample's moments", 2});
  out.add(Caption{Caption::Of::Table, "Moments of the sample"});
  out.add(std::move(table));
  out.add(Heading{"The sample's correlations", 2});
  reportCorrelations(out, varying, [&](std::int32_t i, std::int32_t j) {
    return statistics->correlation(columns[static_cast<std::size_t>(i)], columns[static_cast<std::size_t>(j)]);
  });
}

}  // namespace tarvex
