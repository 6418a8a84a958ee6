#pragma once

#include <cstdint>
#include <vector>

#include "base/Progress.h"
#include "plots/Figure.h"
#include "postproc/UaStats.h"

namespace tarvex {

struct RunColumn;

// The forms of a histogram: its columns filled, their outline, bars of the shares of the runs, the cumulative curve,
// its complement, bars of the counts.
enum class HistogramForm { Area, Outline, Frequency, Cumulative, Complement, Bars };

// How many columns counts are shown in: as many as the runs have room for, neighbours of the hundred and one taken
// together by D. W. Scott's rule ("On optimal and data-based histograms", Biometrika 66, 1979), or all of them, as in
// the saved table. Curves have all.
enum class HistogramBins { Suited, All };

// The curves of one or more variables on one plane, each in its line style. On the logarithmic scale only variables
// above 0 appear; a figure without curves says so in its subtitle. Requires: variables that there are.
Figure histogramPlot(const UaStats& stats, const std::vector<std::int32_t>& variables, HistogramForm form,
                     HistogramScale scale, HistogramBins bins = HistogramBins::Suited);
// True for a variable that statistics have no bins of because a value is infinite: its runs have to be shown instead.
bool isWithoutBins(const UaStats& stats, std::int32_t variable);
// The same for columns of a run table, on the same hundred and one bins. Infinite values are left out of them, and
// counted in the subtitle. After a stop without charts, and the reason is that.
Figure histogramPlot(const std::vector<const RunColumn*>& columns, HistogramForm form, HistogramScale scale,
                     HistogramBins bins = HistogramBins::Suited, const Progress& progress = {});

}  // namespace tarvex
