#include "panels/prep/factorGraph.h"

#include "base/NumberText.h"
#include "factors/SampledSummary.h"
#include "factors/TruncatedDistribution.h"
#include "plots/distributionPlot.h"

namespace tarvex {
namespace {

QString curveNumber(double value) {
  constexpr int kDigits = 4;  // as much as a look at the curve needs
  return QString::fromStdString(numberText(value, kDigits));
}

QString sampledText(const SampledSummary& summary) {
  return "Sampled: mean " + curveNumber(summary.mean) + ", deviation " + curveNumber(summary.deviation) +
         QString::fromUtf8("; 5\u00a0% lie below ") + curveNumber(summary.low) +
         QString::fromUtf8(", 95\u00a0% below ") + curveNumber(summary.high);
}

QString notSampledText(const Factor& factor) {
  if (!factor.isStochastic()) return {};
  const QString problem = QString::fromStdString(factor.parameterProblem());
  return "Nothing can be sampled" + (problem.isEmpty() ? QString(" with these parameters.") : ": " + problem);
}

}  // namespace

FactorPicture pictureOf(const Factor& factor) {
  FactorPicture picture{distributionPlot(factor), {}};
  Figure& figure = picture.figure;
  figure.title.clear();
  figure.subtitle.clear();
  figure.columns = 1;
  SampledSummary summary;
  const bool isSampled = summariseSampled(factor, summary);
  picture.sampled = isSampled ? sampledText(summary) : notSampledText(factor);
  if (figure.charts.empty() || !isSampled) return picture;
  const Colour colour = namedColour("Indian Red");
  for (Chart& chart : figure.charts) {
    auto& plane = std::get<XyChart>(chart);
    for (const double x : {summary.low, summary.high})
      plane.layers.emplace_back(Line{{x, x}, {0.0, plane.y.upper}, colour, LineStyle::DoubleDot, false});
  }
  figure.legend.push_back({"5 and 95 % of the sampled values", colour, LegendMark::Line, LineStyle::DoubleDot});
  return picture;
}

QString truncationText(const Factor& factor) {
  const auto* const truncated = dynamic_cast<const TruncatedDistribution*>(&factor);
  if (truncated == nullptr) return {};
  return QString::asprintf("%.3f - %.3f", truncated->leftTruncation(), truncated->rightTruncation());
}

}  // namespace tarvex
