#pragma once

#include <string>
#include <vector>

#include "model/InternalModel.h"
#include "toolkit/Dialogs.h"

namespace tarvex {

// A chooser of files of models of equations, in the directory that is remembered for them.
FileChoice modelFileChoice(const QString& title);
// The file to be loaded; empty when the user cancelled.
QString chooseModelFile(QWidget* parent, bool alsoOthers = false);

// A model without equations whose inputs have these names.
InternalModel newModelOf(const std::vector<std::string>& inputs);

}  // namespace tarvex
