#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarvex {

class FrontEnd;
class ProjectConfiguration;

// What an analysis of a finished run is to compute.
struct AnalysisRequest {
  std::vector<std::string> variables;  // empty: every output, at its maximum where it has a time axis
  bool uncertainty = true;
  bool sensitivity = true;
  std::optional<double> tchebyConfidence;      // level of both bounds on the mean
  std::optional<double> kolmogorovConfidence;  // level of the other
  std::optional<double> alpha;                 // confidence of the significance tests
};

// Selects the variables, computes what is asked and stores it in the project's post-processor part. A block that isn't
// asked for stays where it still fits the selection and is otherwise left as not computed. False, with the message
// shown and the project as it was, when the request can't be met.
[[nodiscard]] bool analyse(ProjectConfiguration& project, const AnalysisRequest& request, FrontEnd& frontEnd);

// Computes of the selected variables what the project lacks, statistics or measures, and leaves what it has. As
// analyse().
[[nodiscard]] bool completeAnalysis(ProjectConfiguration& project, FrontEnd& frontEnd);
// Sees to it that the measures of a variable are there, computed if the project lacks them; `place` becomes its place
// among the analysed ones. An empty text: of the first one that is analysed. As analyse().
[[nodiscard]] bool provideMeasures(ProjectConfiguration& project, const std::string& variable, FrontEnd& frontEnd,
                                   std::int32_t& place);

}  // namespace tarvex
