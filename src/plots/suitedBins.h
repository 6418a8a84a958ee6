#pragma once

#include <vector>

namespace tarvex {

// Takes neighbours of the bins of a histogram together, so that columns are about as wide as D. W. Scott's rule wants
// them for as many runs ("On optimal and data-based histograms", Biometrika 66, 1979): 3.49 deviations over the cube
// root of the count. The last bin, of what equals the largest value, joins the one before, and the columns end there.
// False, with nothing changed, for anything but the hundred and one bins with the edge behind them.
// `runs`: how many the bins hold; heights may be shares of them.
bool takeBinsTogether(std::vector<double>& edges, std::vector<double>& heights, double runs);

}  // namespace tarvex
