#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "plots/Figure.h"

namespace tarvex::test {

// Figures of 320 x 240 for tests of drawing, the same each time.
Figure figureOf(std::vector<Chart> charts, int columns = 1);
XyChart scattergram(std::size_t points);
XyChart curves();
XyChart labelled(std::size_t points, const std::string& name);
CobwebChart cobweb(std::size_t runs, std::size_t axes);
BarChart bars(std::size_t categories, const std::string& name);
PieChart pie(std::size_t slices, const std::string& name);

// One of each kind, with its name.
std::vector<std::pair<std::string, Figure>> sampleFigures();

}  // namespace tarvex::test
