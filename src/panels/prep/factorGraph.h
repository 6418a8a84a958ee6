#pragma once

#include <QString>

#include "plots/Figure.h"

namespace tarvex {

class Factor;

// What panels show of a factor.
struct FactorPicture {
  // Density over cumulative with the points of 5 and 95 percent of what will be sampled, without a title. Without
  // charts where there is no curve to draw.
  Figure figure;
  // "Sampled: mean 5, deviation 1; 5 % lie below 3.36, 95 % below 6.64"; why there is nothing to sample otherwise.
  QString sampled;
};
FactorPicture pictureOf(const Factor& factor);
// "0.001 - 0.999"; empty for a kind without truncation.
QString truncationText(const Factor& factor);

}  // namespace tarvex
