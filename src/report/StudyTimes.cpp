#include <fmt/format.h>

#include <algorithm>

#include "model/ModelConfiguration.h"
#include "plots/timePlots.h"
#include "postproc/TimedVariables.h"
#include "postproc/VelsConfiguration.h"
#include "report/Document.h"
#include "report/StudySections.h"

namespace tarvex {

namespace {

// The outputs that the analysed variables are of, each once.
std::vector<std::string> analysedOutputs(const StudyParts& study) {
  const std::vector<std::string> known = study.vels.outputNames(study.model);
  std::vector<std::string> outputs;
  for (const std::string& variable : study.vels.selectedVariables())
    if (const auto place = outputOfVariable(variable, known))
      if (std::ranges::find(outputs, known[*place]) == outputs.end()) outputs.push_back(known[*place]);
  return outputs;
}

}  // namespace

void addStudyTimes(Document& out, const StudyParts& study, const Progress& progress) {
  constexpr std::size_t kMostOutputs = 12;  // each is a pass over all results
  constexpr double kHeight = 400.0;
  if (!study.model.results.hasTimeAxis()) return;
  std::vector<std::string> outputs = analysedOutputs(study);
  if (outputs.empty()) return;
  out.add(Heading{"Outputs over time", 2});
  const std::size_t all = outputs.size();
  outputs.resize(std::min(all, kMostOutputs));
  const std::vector<std::string> known = study.vels.outputNames(study.model);
  for (std::size_t i = 0; i < outputs.size(); ++i) {
    const auto share = [&](std::size_t place) {
      return static_cast<double>(place) / static_cast<double>(outputs.size());
    };
    TimeBands bands;
    std::string problem;
    if (!computeTimeBands(study.model, known, outputs[i], bands, problem, progress.part(share(i), share(i + 1)))) {
      if (progress.stopped()) return;
      out.add(Remark{problem});
      continue;
    }
    Figure figure = timeBandsPlot({bands});
    if (figure.charts.empty()) {
      out.add(Paragraph{outputs[i] + ": " + figure.emptyText});
      continue;
    }
    figure.height = kHeight;
    out.add(std::move(figure));
    out.add(Caption{Caption::Of::Figure, "Mean, median and bands of quantiles of " + outputs[i] + " over time"});
  }
  if (outputs.size() < all)
    out.add(Remark{fmt::format("Of {} outputs the first {} are shown over time.", all, outputs.size())});
}

}  // namespace tarvex
