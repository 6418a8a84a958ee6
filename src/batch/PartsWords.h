#pragma once

#include "batch/CommandLine.h"

namespace CLI {  // NOLINT(readability-identifier-naming): named by the library
class App;
}

namespace tarvex {

// The options of a run in parts.
void addPartsWords(CLI::App& app, PartsOptions& options);
// The commands on one that was begun: resume, status, cancel.
void addPartsCommands(CLI::App& app, PartsCommands& options, Command& command);

}  // namespace tarvex
