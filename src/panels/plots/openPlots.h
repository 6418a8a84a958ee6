#pragma once

namespace tarvex {

class ResultDesk;

// Opens the plots of the sample in hand, and of its results where there are some; brings them to the front when they
// are open already. Why it can't be done has then been said.
void openPlots(ResultDesk& desk);

}  // namespace tarvex
