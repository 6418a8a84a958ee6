#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/Progress.h"
#include "plots/ColourSet.h"
#include "plots/Figure.h"
#include "plots/RunTable.h"

namespace tarvex {

struct CorrelationPreview;

// One column against another; `region`, if any, is framed.
Figure scatterPlot(const RunColumn& x, const RunColumn& y, const std::optional<Region>& region = std::nullopt);

// Parallel axes over all columns of the table. A run outside any filter drops out, or, with `showDropped`, stands
// behind the others in a colour of their own. The colour of a run follows from the first column. Without charts after a
// stop.
Figure cobwebPlot(const RunTable& table, const std::vector<RunRange>& filters, bool showDropped = false,
                  ColourSet colours = ColourSet::Distinct, const Progress& progress = {});

// What a correlation between two factors looks like.
Figure correlationPreviewPlot(const CorrelationPreview& preview, const std::string& firstName,
                              const std::string& secondName);

}  // namespace tarvex
