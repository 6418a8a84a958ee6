#pragma once

#include <string>
#include <utility>
#include <vector>

namespace tarvex {

std::string programVersion();

// This program and the libraries that its numbers and pictures rest on, each with its version.
std::vector<std::pair<std::string, std::string>> versionsInUse();

}  // namespace tarvex
