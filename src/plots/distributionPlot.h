#pragma once

#include "plots/Figure.h"

namespace tarvex {

class Factor;

// Density and cumulative of a factor, side by side: curves over its central range, or bars and steps of a discrete one.
// A constant or a relation has none: the subtitle tells what it is.
Figure distributionPlot(const Factor& factor);

}  // namespace tarvex
