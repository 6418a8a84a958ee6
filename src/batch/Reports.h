#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "postproc/UaStats.h"

namespace tarvex {

class FactorList;
class InternalModel;
class ModelConfiguration;
class PrepConfiguration;
class SensitivityStats;

// What the system's objects hold, as aligned tables for people.

void reportFactors(std::ostream& out, const FactorList& factors);
// Method with its settings, counts, and the statistics of the sample.
void reportSample(std::ostream& out, const PrepConfiguration& prep);
void reportEquations(std::ostream& out, const InternalModel& model);
void reportResults(std::ostream& out, const ModelConfiguration& model);
// Per variable moments and bounds.
void reportUncertainty(std::ostream& out, const UaStats& statistics);
// The filled bins of each variable.
void reportHistograms(std::ostream& out, const UaStats& statistics, HistogramScale scale);
// Per variable the measures of the method, factors in the order of the list.
void reportMeasures(std::ostream& out, const SensitivityStats& statistics, const std::vector<std::string>& variables);

}  // namespace tarvex
