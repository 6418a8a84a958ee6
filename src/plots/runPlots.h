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

// How a scattergram shows its points.
struct ScatterLook {
  std::optional<Region> region = std::nullopt;      // that is framed
  bool logarithmicX = false, logarithmicY = false;  // values that aren't above 0 are left out, and counted
  bool jitter = false;                              // points of columns of few values stand a little apart
  std::optional<bool> shaded = std::nullopt;  // colours tell how many lie on a place; nothing: where they are many
};

// One column against another. Without charts, and with the reason, where no run has both.
Figure scatterPlot(const RunColumn& x, const RunColumn& y, const ScatterLook& look = {});
// Each column against each, and in the diagonal how each is spread. Columns without a number are named in the subtitle.
// Without charts after a stop. Requires: two columns or more.
Figure scatterMatrix(const std::vector<const RunColumn*>& columns, const Progress& progress = {});
// How many columns a matrix may have of so many runs, as each plane holds its points: at least two.
std::size_t mostMatrixColumns(std::int32_t runs);

// More points hide each other.
bool isCrowded(std::size_t points);
// Few values, each in several runs.
bool isDiscrete(const RunColumn& column);
// All finite values are above 0, and there is one.
bool canBeLogarithmic(const RunColumn& column);

// Parallel axes over all columns of the table. A run outside any filter drops out, or, with `showDropped`, stands
// behind the others in a colour of their own. The colour of a run follows from the first column. Without charts after a
// stop.
Figure cobwebPlot(const RunTable& table, const std::vector<RunRange>& filters, bool showDropped = false,
                  ColourSet colours = ColourSet::Distinct, const Progress& progress = {});

// What a correlation between two factors looks like.
Figure correlationPreviewPlot(const CorrelationPreview& preview, const std::string& firstName,
                              const std::string& secondName);

}  // namespace tarvex
