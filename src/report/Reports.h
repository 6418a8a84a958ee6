#pragma once

#include <string>
#include <vector>

#include "postproc/UaStats.h"

namespace tarvex {

class FactorList;
class InternalModel;
class ModelConfiguration;
class PrepConfiguration;
class SensitivityStats;
class VelsConfiguration;
struct Document;
struct QuantileTable;

// What the system's objects hold, as sections for people, added at the end of a document.

void reportFactors(Document& out, const FactorList& factors);
// Method with its settings, counts and, where it is there to be read, the sample file.
enum class SampleFileName { Told, Untold };
void reportDesign(Document& out, const PrepConfiguration& prep, SampleFileName file = SampleFileName::Told);
// The statistics of the sample; those of a record without any are made for display.
void reportSampleStatistics(Document& out, const PrepConfiguration& prep);
void reportEquations(Document& out, const InternalModel& model);
void reportResults(Document& out, const ModelConfiguration& model, const VelsConfiguration& vels);
// Per variable moments and bounds.
void reportUncertainty(Document& out, const UaStats& statistics);
// Per variable the quantiles and probabilities with their intervals, of runs by this sampling method. Nothing where
// none were computed.
void reportQuantiles(Document& out, const QuantileTable& quantiles, const std::vector<std::string>& variables,
                     std::int32_t methodId);
// The filled bins of each variable.
void reportHistograms(Document& out, const UaStats& statistics, HistogramScale scale);
// Per variable the measures of the method, factors in the order of the list; or of one variable alone, named so,
// without heading.
void reportMeasures(Document& out, const SensitivityStats& statistics, const std::vector<std::string>& variables);
void reportMeasuresOf(Document& out, const SensitivityStats& statistics, std::int32_t variable,
                      const std::string& name);

}  // namespace tarvex
