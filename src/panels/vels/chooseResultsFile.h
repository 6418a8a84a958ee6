#pragma once

#include <vector>

#include "toolkit/Dialogs.h"

namespace tarvex {

// A file to write results to, from the directory in which the user last chose one; where the choice ends is remembered
// in its place.
std::optional<ChosenFile> chooseResultsFile(const char* title, std::vector<FileFilter> filters, const char* suffix,
                                            QWidget* parent);

}  // namespace tarvex
