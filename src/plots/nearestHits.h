#pragma once

#include <optional>
#include <vector>

#include "plots/FigureIndex.h"

namespace tarvex {

// What is nearest to a place in a chart of each kind, no further away than `reach`. Hit::chart is left to the caller.
struct Pointer {
  double x, y, reach;
};
std::optional<Hit> nearestHit(const XyChart& chart, const PlaneLayout& layout, const std::vector<PointGrid>& grids,
                              const Pointer& pointer);
std::optional<Hit> nearestHit(const CobwebChart& chart, const CobwebLayout& layout, const Pointer& pointer);
std::optional<Hit> nearestHit(const BarChart& chart, const BarLayout& layout, const Pointer& pointer);
std::optional<Hit> nearestHit(const PieChart& chart, const PieLayout& layout, const Pointer& pointer);

}  // namespace tarvex
