#pragma once

#include <iosfwd>

namespace tarvex {

struct TrialReport;

// What came of a model that was tried, but for why it failed.
void printTrial(const TrialReport& report, std::ostream& out);

}  // namespace tarvex
