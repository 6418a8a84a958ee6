#pragma once

#include "batch/CommandLine.h"

namespace CLI {
class App;
}

namespace tarvex {

// The options of a run in parts.
void addPartsWords(CLI::App& app, PartsOptions& options);
// The commands on one that was begun: resume, status, cancel.
void addPartsCommands(CLI::App& app, PartsCommands& options, Command& command);

}  // namespace tarvex
