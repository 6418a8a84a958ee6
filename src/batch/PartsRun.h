#pragma once

#include "batch/CommandLine.h"
#include "batch/Commands.h"

namespace tarvex {

class ModelChoice;

// Carries out the run that the command asks for in parts, or hands it to a process in the background.
int runInParts(const RunOptions& options, ModelChoice model, const Console& console);

}  // namespace tarvex
