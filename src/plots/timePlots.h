#pragma once

#include <optional>
#include <vector>

#include "plots/Figure.h"
#include "postproc/TimeBands.h"

namespace tarvex {

// Outputs over their times, a chart each: the mean of the runs, their median, and the bands from 25 to 75 and from 5 to
// 95 percent of them. A line marks the time `marked`, where it lies among them. Outputs without a number at any time
// are named in the subtitle; without charts, and with the reason, where that is all of them.
Figure timeBandsPlot(const std::vector<TimeBands>& outputs, std::optional<double> marked = std::nullopt);

}  // namespace tarvex
