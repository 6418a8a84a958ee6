#pragma once

#include "toolkit/Dialogs.h"

namespace tarvex {

// A file of factors or of a sample, from the directory in which the user last chose one; where the choice ends is
// remembered in its place.
std::optional<ChosenFile> choosePrepFile(const char* title, FileChoice::Purpose purpose,
                                         std::vector<FileFilter> filters, const char* suffix, QWidget* parent);

}  // namespace tarvex
