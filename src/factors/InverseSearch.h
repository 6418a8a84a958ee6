#pragma once

#include <vector>

#include "factors/Distribution.h"

namespace tarvex {

inline constexpr std::size_t kTablePoints = 101;

// Two searches for the points of a distribution's inverse table, by nothing but its mean, stdDev and cumulative. Both
// need finite moments and append 101 points to an empty `points`: the lower end, the points where the cumulative first
// reaches 0.01, 0.02, ... 0.99, and the upper end. False when they give up; the points are then of no use.

// Steps of a fixed count. It decides the table wherever it succeeds: its points are part of every sample's numbers.
[[nodiscard]] bool countedSearch(const Distribution& distribution, std::vector<TablePoint>& points);

// Doubling and bisection, for what the counted steps can't reach: narrow spikes far from 0, heavy tails, ends of
// infinite density. Needs a stdDev above 0.
[[nodiscard]] bool boundedSearch(const Distribution& distribution, std::vector<TablePoint>& points);

}  // namespace tarvex
