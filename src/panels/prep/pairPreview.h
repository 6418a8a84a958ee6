#pragma once

#include <string>

#include "correlation/CorrelationPreview.h"

namespace tarvex {

class CorrelationDraft;

// What the correlation in force makes of two factors.
struct PairPreview {
  CorrelationPreview points;
  double asked = 0.0;  // rank correlation
};

// For two matrix rows. False, with the reason, where the correlation says nothing of the pair, or can't be calculated.
[[nodiscard]] bool previewPair(const CorrelationDraft& draft, int first, int second, PairPreview& preview,
                               std::string& message);

}  // namespace tarvex
