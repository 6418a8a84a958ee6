#pragma once

#include <utility>
#include <vector>

namespace tarvex {

// The places of a line in points of a picture whose pixels are 1 / `pixelsPerUnit` wide, with as few as cover the same
// pixels: of each column of pixels the first, the lowest, the highest and the last. A place that is not finite is a
// gap. Few places, and lines that go back to the left, stay as they are.
std::vector<std::pair<double, double>> pixelColumns(std::vector<std::pair<double, double>> places,
                                                    double pixelsPerUnit);

}  // namespace tarvex
