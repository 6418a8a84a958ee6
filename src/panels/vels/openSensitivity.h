#pragma once

namespace tarvex {

class ResultDesk;

// The panel of the sensitivity measures of the selected variables, by the sampling method. What isn't computed yet is
// computed first, with its progress and its messages; where that fails nothing opens.
void openSensitivity(ResultDesk& desk);

}  // namespace tarvex
