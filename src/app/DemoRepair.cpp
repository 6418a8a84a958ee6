#include "app/DemoRepair.h"

#include <filesystem>

#include "app/DemoCases.h"
#include "base/TextReader.h"
#include "base/TextWriter.h"

namespace tarvex {

namespace {

constexpr const char* kPlaceholder = "MAINDIR";

std::string repairedLine(const std::string& line, const std::string& mainDirectory) {
  if (line.find(kPlaceholder) == std::string::npos) return line;
  const std::size_t bracket = line.find(']');
  return bracket == std::string::npos ? line : mainDirectory + line.substr(bracket + 1);
}

void repairFile(const std::string& path, const std::string& mainDirectory) {
  std::error_code error;
  TextWriter out(path);
  if (std::filesystem::exists(path, error)) {
    TextReader in = TextReader::fromFile(path);
    std::string line;
    while (in.ok() && !in.atEnd())
      if (in.readLine(line, in.remaining())) out << repairedLine(line, mainDirectory) << '\n';
    if (in.fail()) return;
    out << '\n';
  }
  static_cast<void>(out.commit());
}

}  // namespace

void repairDemoFiles(const std::string& mainDirectory) {
  for (const DemoCase& demo : kDemoCases) repairFile(demoFilePath(mainDirectory, demo.fileName), mainDirectory);
}

}  // namespace tarvex
