#pragma once

#include <array>
#include <string>

namespace tarvex {

// The demonstration cases, delivered in `Demo` of the main directory as post-processor files that end in .dem.
struct DemoCase {
  const char* name;
  const char* fileName;  // as the installer writes it, without .dem
  bool canRun;           // its model comes with it
};

// clang-format off
inline constexpr std::array<DemoCase, 7> kDemoCases = {{
    {"Ishigami", "Ishigami", true},
    {"Linear",   "linear",   true},
    {"LevelE",   "levelE",   false},
    {"SobolG0",  "sobolG0",  true},
    {"SobolG1",  "sobolG1",  true},
    {"SobolG2",  "sobolG2",  true},
    {"SobolG3",  "sobolG3",  true},
}};
// clang-format on

// The case of that name; null when there is none.
const DemoCase* findDemoCase(const std::string& name);

// The path of a case's file, looked up ignoring case; with `name` as it stands when there is no such file.
std::string demoFilePath(const std::string& mainDirectory, const std::string& name);

}  // namespace tarvex
