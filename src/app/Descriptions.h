#pragma once

#include <string>
#include <vector>

namespace tarvex {

class ModelConfiguration;
class PrepConfiguration;

// The lines with which the main panel describes what a project holds.

// Where a pre-processor configuration came from, which settles the wording.
enum class PrepOrigin { Configured, Saved, SavedSample, External, Demo };

std::vector<std::string> describePrep(const PrepConfiguration& prep, PrepOrigin origin);
std::vector<std::string> describeModel(const ModelConfiguration& model);
// The panel's line on what goes on, after a model was chosen.
std::string modelSelectionText(const ModelConfiguration& model);

}  // namespace tarvex
