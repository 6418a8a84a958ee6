#pragma once

#include <string>
#include <vector>

namespace tarvex::test {

// How many descriptors this process has open.
int openDescriptors();
// Whether it has any child left, running or not waited for.
bool hasChildren();
// Those of the processes whose numbers stand in the file, one a line, that still run.
std::vector<int> livingProcesses(const std::string& pidFile);
// The running processes of a program whose arguments hold this text.
std::vector<int> processesOf(const std::string& program, const std::string& argument);
// Sleeps until the file has that many lines, 5 s at most.
bool waitForLines(const std::string& path, std::size_t lines);

}  // namespace tarvex::test
