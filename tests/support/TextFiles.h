#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarvex::test {

// The bytes of a file; a test failure and an empty text when it can't be read.
std::string readFile(const std::string& path);
void writeFile(const std::string& path, std::string_view text);
// A program of shell commands that can be started.
void writeScript(const std::string& path, const std::string& commands);

// The lines of a text without their LF. What stands behind the last LF is a line of its own, an empty one too.
std::vector<std::string> splitLines(std::string_view text);

// The lines of a file, without an empty one behind the last LF.
std::vector<std::string> readLines(const std::string& path);

}  // namespace tarvex::test
