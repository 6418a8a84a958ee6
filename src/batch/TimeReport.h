#pragma once

#include <ostream>

namespace tarvex {

class ProjectConfiguration;

// What is to be seen of an analysed project whose outputs have a time axis: when each is largest, and the factors that
// lead by rank measures.
void reportTimesOfMaxima(std::ostream& out, const ProjectConfiguration& project);
void reportLeadingFactors(std::ostream& out, const ProjectConfiguration& project);

}  // namespace tarvex
