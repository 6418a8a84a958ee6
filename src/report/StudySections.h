#pragma once

#include <cstddef>
#include <string>

#include "base/Progress.h"

namespace tarvex {

class FactorList;
class ModelConfiguration;
class PrepConfiguration;
class VelsConfiguration;
struct Document;
struct QuantileTable;
struct RunTable;

// The sections of a report that are about a study as a whole, added at the end of a document.

// What a report is made of.
struct StudyParts {
  const PrepConfiguration& prep;
  const ModelConfiguration& model;
  const VelsConfiguration& vels;
  const QuantileTable& quantiles;
};

// In sentences: how uncertain each variable is, what drives it, how sure that is, what to do next.
void addStudySummary(Document& out, const StudyParts& study);
// What a reader must know before he relies on the numbers: of this design, these factors, these runs.
void addStudyLimits(Document& out, const StudyParts& study);
// The correlations that were asked for beside those that the sample has. `columns` begins with those of all factors.
void addDesignCorrelations(Document& out, const PrepConfiguration& prep, const RunTable& columns);
// Outputs that are analysed and have a time axis: mean and bands of quantiles at each time. Nothing where there is
// none; after a stop it is incomplete.
void addStudyTimes(Document& out, const StudyParts& study, const Progress& progress);
// The rank correlations of the factors, which are the first `factors` columns, and of as many of the variables behind
// them as a page has room for. Nothing of less than two factors, or after a stop.
void addCorrelationMap(Document& out, const RunTable& columns, std::size_t factors, const Progress& progress);
// The words of the report that a reader may not know.
void addGlossary(Document& out, const StudyParts& study);

// Whether any pair of factors was asked to be correlated.
bool isCorrelated(const FactorList& factors);
// "The internal model flood", "The program run.sh": what was run.
std::string modelPhrase(const ModelConfiguration& model);

}  // namespace tarvex
