#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "plots/ColourSet.h"
#include "plots/Figure.h"
#include "plots/RunTable.h"

namespace tarvex {

struct CorrelationPreview;

// One column against another; `region`, if any, is framed.
Figure scatterPlot(const RunColumn& x, const RunColumn& y, const std::optional<Region>& region = std::nullopt);

// Parallel axes over all columns of the table. A run outside any filter drops out, or, with `showDropped`, stands
// behind the others in a colour of their own. The colour of a run follows from the first column.
Figure cobwebPlot(const RunTable& table, const std::vector<RunRange>& filters, bool showDropped = false,
                  ColourSet colours = ColourSet::Distinct);

// What a correlation between two factors looks like.
Figure correlationPreviewPlot(const CorrelationPreview& preview, const std::string& firstName,
                              const std::string& secondName);

}  // namespace tarvex
