#pragma once

#include "plots/Colour.h"

namespace tarvex {

// The colours of everything that isn't data: those of paper and of light desktops, unless a view says others.
struct Inks {
  Colour page = {65535, 65535, 65535};
  Colour text = {8000, 8000, 8000};
  Colour faintText = {30000, 30000, 30000};  // that stands back
  Colour frame = {22000, 22000, 22000};      // axes, ticks, leader lines
  Colour grid = {58500, 58500, 58500};
};

// The same for dark desktops.
inline constexpr Inks kDarkInks = {
    {8000, 8000, 8500}, {60000, 60000, 60000}, {42000, 42000, 42000}, {45000, 45000, 45000}, {15000, 15000, 15500}};

}  // namespace tarvex
