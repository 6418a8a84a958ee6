#pragma once

namespace tarvex {

class ResultDesk;

// Computes what is missing of the sensitivity measures, with messages and progress, and opens the panel of the sampling
// method's measures.
void openSensitivity(ResultDesk& desk);

}  // namespace tarvex
