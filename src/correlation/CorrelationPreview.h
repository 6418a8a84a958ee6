#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tarvex {

class Distribution;
class FactorList;

// The points that show what a correlation between two factors looks like.
struct CorrelationPreview {
  static constexpr int kPoints = 250;

  std::vector<double> x;  // values of the first factor
  std::vector<double> y;  // of the second
};

// A pair with that rank correlation. False, with the system's text, when the correlation or a factor doesn't allow it;
// the preview is then empty. The factors' inverse tables are empty afterwards.
[[nodiscard]] bool previewRankCorrelation(Distribution& first, Distribution& second, float correlation,
                                          CorrelationPreview& preview, std::string& message);
// A parent and its child in the dependence tree.
[[nodiscard]] bool previewTreeLink(Distribution& parent, Distribution& child, double correlation,
                                   CorrelationPreview& preview, std::string& message);
// Two factors in the order of the first rows of a Stein sample, as many as there are up to kPoints. The columns count
// correlatable factors of `stein` alone.
[[nodiscard]] bool previewSteinRanks(Distribution& first, Distribution& second, const FactorList& stein,
                                     std::int32_t firstColumn, std::int32_t secondColumn, CorrelationPreview& preview,
                                     std::string& message);

}  // namespace tarvex
