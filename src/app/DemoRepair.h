#pragma once

#include <string>

namespace tarvex {

// The demonstration files are delivered with "[MAINDIR]" where their paths begin. This puts the real directory in: in
// every line that holds "MAINDIR" the text up to the first ']' becomes `mainDirectory`. Another empty line ends each
// file; a file that is missing is made, empty. A file that can't be read or written stays as it is.
void repairDemoFiles(const std::string& mainDirectory);

}  // namespace tarvex
