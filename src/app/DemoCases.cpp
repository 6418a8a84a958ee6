#include "app/DemoCases.h"

#include <algorithm>
#include <filesystem>
#include <vector>

#include "base/Paths.h"

namespace tarvex {

namespace {

char lowered(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool equalIgnoringCase(const std::string& a, const std::string& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) { return lowered(x) == lowered(y); });
}

}  // namespace

const DemoCase* findDemoCase(const std::string& name) {
  const auto* found =
      std::find_if(kDemoCases.begin(), kDemoCases.end(), [&](const DemoCase& c) { return c.name == name; });
  return found == kDemoCases.end() ? nullptr : found;
}

std::string demoFilePath(const std::string& mainDirectory, const std::string& name) {
  const std::string directory = existingPath(mainDirectory) + "/Demo/";
  const std::string fileName = name + ".dem";
  std::error_code error;
  if (std::filesystem::exists(directory + fileName, error)) return directory + fileName;
  std::vector<std::string> found;
  for (std::filesystem::directory_iterator at(directory, error), end; !error && at != end; at.increment(error))
    if (equalIgnoringCase(at->path().filename().string(), fileName)) found.push_back(at->path().filename().string());
  return directory + (found.empty() ? fileName : *std::min_element(found.begin(), found.end()));
}

}  // namespace tarvex
