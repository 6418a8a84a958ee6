#pragma once

#include <string>

#include "postproc/Quantiles.h"

namespace tarvex {

class ModelConfiguration;
class PrepConfiguration;
class VelsConfiguration;
struct Document;

// A whole study for its readers, so that somebody else can repeat it: factors with their densities, design, seed and
// checksum of the sample, model, uncertainty and measures of each variable with their pictures, versions. Blocks that
// aren't computed are said to be missing, quantiles left out. `title` heads the page.
Document studyReport(const PrepConfiguration& prep, const ModelConfiguration& model, const VelsConfiguration& vels,
                     const std::string& title, const QuantileTable& quantiles = {});

// Whether a report can be a file of that name, by its suffix. On false `message` is a sentence for the user.
[[nodiscard]] bool isReportFile(const std::string& path, std::string& message);

// The report as a page of HTML or as PDF, by the suffix of the path. False, with a sentence for the user, for another
// suffix or a file that can't be made or written; an old file is replaced only by a complete new one.
[[nodiscard]] bool saveDocument(const std::string& path, const Document& document, std::string& message);

}  // namespace tarvex
