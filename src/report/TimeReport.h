#pragma once

#include <ostream>

namespace tarvex {

class ModelConfiguration;
class VelsConfiguration;

// What is to be seen of an analysed study whose outputs have a time axis: when each is largest, and the factors that
// lead by rank measures.
void reportTimesOfMaxima(std::ostream& out, const ModelConfiguration& model, const VelsConfiguration& vels);
void reportLeadingFactors(std::ostream& out, const VelsConfiguration& vels);

}  // namespace tarvex
