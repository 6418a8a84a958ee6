#include "batch/CommandLine.h"
#include "batch/PlotFigures.h"
#include "batch/PlotWords.h"
#include "correlation/CorrelationPreview.h"
#include "factors/Distribution.h"
#include "factors/FactorList.h"
#include "plots/distributionPlot.h"
#include "plots/runPlots.h"

namespace tarvex {

namespace {

bool findFactors(const std::vector<std::string>& names, const FactorList& factors, std::vector<std::int32_t>& indices,
                 std::string& message) {
  for (const std::string& name : names) {
    indices.push_back(factors.indexOf(name));
    if (indices.back() >= 0) continue;
    message = "There is no factor '" + name + "' in the list.";
    return false;
  }
  return true;
}

// A factor's place among the correlatable ones, by which the matrix knows it.
std::int32_t matrixPlace(const FactorList& factors, std::int32_t index) {
  std::int32_t place = 0;
  for (std::int32_t i = 0; i < index; ++i) place += factors.isCorrelatable(i);
  return place;
}

// The observations of two factors of the Stein sample.
bool readStein(const FactorList& factors, std::int32_t first, std::int32_t second, CorrelationPreview& preview,
               std::string& message) {
  if (factors.steinInfo.getColumn(first, preview.x) && factors.steinInfo.getColumn(second, preview.y)) return true;
  message = factors.steinInfo.errorText();
  return false;
}

bool previewLink(FactorList& factors, std::int32_t first, std::int32_t second, Distribution& one, Distribution& other,
                 CorrelationPreview& preview, std::string& message) {
  if (factors.parentOf(second) == first)
    return previewTreeLink(one, other, factors.node(second).correlation, preview, message);
  if (factors.parentOf(first) == second) {
    const bool made = previewTreeLink(other, one, factors.node(first).correlation, preview, message);
    std::swap(preview.x, preview.y);
    return made;
  }
  message = one.name + " and " + other.name + " are not linked in the dependence tree.";
  return false;
}

bool makePreview(const std::vector<std::int32_t>& indices, FactorList& factors, CorrelationPreview& preview,
                 std::string& message) {
  auto* first = dynamic_cast<Distribution*>(&factors.factor(indices[0]));
  auto* second = dynamic_cast<Distribution*>(&factors.factor(indices[1]));
  if (first == nullptr || second == nullptr || first == second) {
    message = "Only two factors with a distribution can be correlated.";
    return false;
  }
  switch (factors.correlationMode) {
    case kDependenceTree:
      return previewLink(factors, indices[0], indices[1], *first, *second, preview, message);
    case kImanConover:
      return previewRankCorrelation(
          *first, *second, factors.matrixAt(matrixPlace(factors, indices[0]), matrixPlace(factors, indices[1])),
          preview, message);
    case kSteinSample:
      return readStein(factors, indices[0], indices[1], preview, message);
    default:
      message = "The factors of this list are not correlated.";
      return false;
  }
}

}  // namespace

bool makeFactorFigure(const PlotOptions& options, FactorList& factors, Figure& figure, std::string& message) {
  const bool isPreview = options.kind == "preview";
  const std::vector<std::string> names = splitLists(options.variables);
  if (names.size() != (isPreview ? 2u : 1u)) {
    message = isPreview ? "A preview shows the correlation of two factors: --variables a,b."
                        : "A distribution is that of one factor: --variables a.";
    return false;
  }
  std::vector<std::int32_t> indices;
  if (!findFactors(names, factors, indices, message)) return false;
  if (!isPreview) {
    figure = distributionPlot(factors.factor(indices.front()));
    return true;
  }
  CorrelationPreview preview;
  if (!makePreview(indices, factors, preview, message)) return false;
  figure = correlationPreviewPlot(preview, names[0], names[1]);
  return true;
}

}  // namespace tarvex
