#pragma once

#include <string>

namespace tarvex {

// The font of all texts, and their size: 1 gives titles of axes 9 points.
struct FigureFont {
  std::string family = "DejaVu Sans";
  double scale = 1.0;
};

}  // namespace tarvex
