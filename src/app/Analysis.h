#pragma once

#include "app/PostProcessor.h"

namespace tarvex {

class FrontEnd;

// What a post-processor computes, under a display of progress and with its messages shown. Each is false, with the
// project as it was, when it can't be done or was stopped. The first two and applyAlpha() are for a
// post-processor in hand, the others make that of a project that no controller owns.
[[nodiscard]] bool analyse(PostProcessor& postProcessor, const AnalysisRequest& request, FrontEnd& frontEnd);
[[nodiscard]] bool completeAnalysis(PostProcessor& postProcessor, FrontEnd& frontEnd);
[[nodiscard]] bool analyse(ProjectConfiguration& project, const AnalysisRequest& request, FrontEnd& frontEnd);
[[nodiscard]] bool applyAlpha(PostProcessor& postProcessor, double alpha, FrontEnd& frontEnd);
[[nodiscard]] bool completeAnalysis(ProjectConfiguration& project, FrontEnd& frontEnd);
[[nodiscard]] bool provideMeasures(ProjectConfiguration& project, const std::string& name, FrontEnd& frontEnd,
                                   std::int32_t& place);

}  // namespace tarvex
