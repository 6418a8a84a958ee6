#pragma once

#include <optional>
#include <string>
#include <vector>

#include "plots/Figure.h"
#include "postproc/TimeBands.h"

namespace tarvex {

// Outputs over their times, a chart each: the mean of the runs, their median, and the bands from 25 to 75 and from 5 to
// 95 percent of them. A line marks the time `marked`, where it lies among them. Outputs without a number at any time
// are named in the subtitle; without charts, and with the reason, where that is all of them. On a logarithmic axis of
// time, times that aren't above 0 have no place.
Figure timeBandsPlot(const std::vector<TimeBands>& outputs, std::optional<double> marked = std::nullopt,
                     AxisScale timeScale = AxisScale::Linear);
// A sentence for the user where the times of an output can't stand on a logarithmic axis; empty where they can.
std::string whyNotLogarithmic(const TimeBands& output);

}  // namespace tarvex
