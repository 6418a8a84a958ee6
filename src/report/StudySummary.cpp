#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "model/ModelConfiguration.h"
#include "postproc/Quantiles.h"
#include "postproc/VelsConfiguration.h"
#include "report/Document.h"
#include "report/MeasureSummary.h"
#include "report/StudySections.h"
#include "sampling/PrepConfiguration.h"

namespace tarvex {

namespace {

constexpr std::int32_t kMostSummarised = 12;  // variables: more is no summary

std::string overview(const StudyParts& study) {
  std::int32_t varied = 0;
  for (std::int32_t i = 0; i < study.prep.factors.factorCount(); ++i)
    if (study.prep.factors.factor(i).isStochastic()) ++varied;
  const std::int32_t runs = study.model.results.runCount();
  std::string text =
      fmt::format("{} was run {} with {}", modelPhrase(study.model), runs == 1 ? "once" : fmt::format("{} times", runs),
                  counted(varied, "uncertain factor"));
  if (study.prep.external == 1)
    text += ", on a sample that was made elsewhere";
  else if (study.prep.sampler)
    text += fmt::format(", sampled by the method {}", study.prep.sampler->methodName);
  return text + '.';
}

const Estimate* quantileAt(const StudyParts& study, std::int32_t variable, double share) {
  const auto& shares = study.quantiles.request.shares;
  const auto found = std::ranges::find(shares, share);
  const auto v = static_cast<std::size_t>(variable);
  if (found == shares.end() || v >= study.quantiles.variables.size()) return nullptr;
  const Estimate& estimate = study.quantiles.variables[v].quantiles[static_cast<std::size_t>(found - shares.begin())];
  return std::isfinite(estimate.value) ? &estimate : nullptr;
}

std::string rounded(double value) {
  return fmt::format("{:.4g}", value);
}

bool isTheSame(const UaStats& statistics, std::int32_t v) {
  return v < statistics.variableCount() && statistics.minimum(v) == statistics.maximum(v);
}

// How far apart the runs are.
std::string spreadText(const StudyParts& study, std::int32_t v) {
  const UaStats& statistics = study.vels.uncertainty;
  const double mean = statistics.mean(v);
  const double deviation = statistics.std(v);
  std::string text;
  if (isTheSame(statistics, v))
    return fmt::format("It is {} in all runs: no factor drives it.", rounded(statistics.minimum(v)));
  if (std::isfinite(mean) && std::isfinite(deviation))
    text = fmt::format("Mean {}, standard deviation {}", rounded(mean), rounded(deviation));
  else
    text = "Its moments are no numbers";
  const Estimate* const low = quantileAt(study, v, 0.05);
  const Estimate* const high = quantileAt(study, v, 0.95);
  if (low != nullptr && high != nullptr)
    text += fmt::format("; 90 % of the runs lie between {} and {}", rounded(low->value), rounded(high->value));
  text += '.';
  const double bound = statistics.tTestBound(v);
  if (study.prep.methodId() == kRandom && study.prep.external == 0 && bound >= 0.0 && std::isfinite(bound) &&
      bound != UaStats::kUnavailable)
    text += fmt::format(" The mean is known to about {} at confidence {} (Student).", rounded(bound),
                        cell(statistics.tchebyConfidence));
  return text;
}

void addVariable(Document& out, const StudyParts& study, std::int32_t v) {
  const auto& names = study.vels.selectedVariables();
  const std::string& name = names[static_cast<std::size_t>(v)];
  std::string text;
  if (v < study.vels.uncertainty.variableCount()) text = spreadText(study, v);
  const SensitivityStats* const measures = study.vels.sensitivity.get();
  if (measures == nullptr || !measures->computed || v >= measures->variableCount) {
    text += "\nNo measures were computed, so nothing is known of what drives it.";
  } else if (!isTheSame(study.vels.uncertainty, v)) {
    const MeasureSummary summary = summarise(*measures, v, measureContext(study.prep, name));
    for (const std::string* const part : {&summary.leads, &summary.trust, &summary.next})
      if (!part->empty()) text += (text.empty() ? "" : "\n") + *part;
  }
  out.add(Heading{name, 2});
  out.add(Paragraph{std::move(text)});
}

}  // namespace

std::string modelPhrase(const ModelConfiguration& model) {
  const ModelChoice& choice = model.choice;
  const auto fileName = [](const std::string& path) { return std::filesystem::path(path).filename().string(); };
  if (choice.spreadsheet == 1) return "The workbook " + fileName(choice.outputFile);
  if (choice.kind == kInternalModel && choice.internalModel() != nullptr)
    return "The internal model " + choice.internalModel()->name();
  if (choice.kind == kExternalExecutable) return "The program " + fileName(choice.executable);
  return "The model";
}

void addStudySummary(Document& out, const StudyParts& study) {
  out.add(Heading{"Summary"});
  out.add(Paragraph{overview(study)});
  const auto count = static_cast<std::int32_t>(study.vels.selectedVariables().size());
  for (std::int32_t v = 0; v < std::min(count, kMostSummarised); ++v) addVariable(out, study, v);
  if (count > kMostSummarised)
    out.add(Remark{fmt::format("The other {} are told of under Uncertainty and Sensitivity.",
                               counted(count - kMostSummarised, "variable"))});
}

}  // namespace tarvex
