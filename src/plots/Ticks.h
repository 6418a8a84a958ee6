#pragma once

#include <string>
#include <vector>

#include "plots/Figure.h"

namespace tarvex {

// Above the largest of a chart, so that curves and bars don't run on its frame.
inline constexpr double kHeadroom = 1.03;

struct Tick {
  double at = 0.0;   // in the axis's coordinates
  std::string text;  // no two texts of an axis are alike; empty for a minor tick
};

// About `wanted` ticks at round values within the axis's limits, upwards.
std::vector<Tick> axisTicks(const Axis& axis, int wanted);

// An axis that holds all finite values of `values`: exactly from the smallest to the largest, or, where they are equal
// or none is finite, with room around.
Axis axisOver(std::string title, const std::vector<double>& values, NumberForm form);

// The end of an axis in as few digits as tell it from its neighbours over that span: "3.14", "2000", "0.056".
std::string limitNumber(double value, double span);

// A number in a form, without padding: "nan", "inf" and "-inf" for what isn't finite.
std::string formNumber(double value, NumberForm form);

}  // namespace tarvex
