#pragma once

#include <string>

#include "base/Progress.h"
#include "postproc/Quantiles.h"

namespace tarvex {

class ModelConfiguration;
class PrepConfiguration;
class VelsConfiguration;
struct Document;

// What stands above a report.
struct ReportWords {
  std::string title;
  std::string author = {};  // empty: nobody is named
  std::string date = {};    // as it is written; empty: none
};
// "2026-11-22": the day on which a report is made, unless its user says another.
std::string today();

// A whole study for its readers, so that somebody else can judge and repeat it: a summary in sentences, known limits,
// factors with their densities, design, seed and checksum of the sample, correlations as asked for and as they came
// out, model, uncertainty and measures of each variable with their pictures, outputs over time, a map of rank
// correlations, a glossary, versions. Blocks that aren't
// computed are said to be missing, quantiles left out. After a stop it is incomplete.
Document studyReport(const PrepConfiguration& prep, const ModelConfiguration& model, const VelsConfiguration& vels,
                     const ReportWords& words, const QuantileTable& quantiles = {}, const Progress& progress = {});

// Whether a report can be a file of that name, by its suffix. On false `message` is a sentence for the user.
[[nodiscard]] bool isReportFile(const std::string& path, std::string& message);

// The report as a page of HTML or as PDF, by the suffix of the path. False, with a sentence for the user, for another
// suffix, a file that can't be made or written, and after a stop; an old file is replaced only by a complete new one.
[[nodiscard]] bool saveDocument(const std::string& path, const Document& document, std::string& message,
                                const Progress& progress = {});

}  // namespace tarvex
