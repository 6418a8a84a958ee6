#include "base/RememberedDirectories.h"

#include <unistd.h>

#include <array>
#include <cstddef>
#include <filesystem>
#include <system_error>

#include "base/Paths.h"
#include "base/TextReader.h"
#include "base/TextRules.h"
#include "base/TextWriter.h"

namespace tarvex {
namespace {

constexpr LineRule kDirectoryRule{"the directory", 1023};  // what config.dat and every record take back

std::array<std::string, RememberedDirectories::kCount> directories;
bool enterThem = false;

std::string configPath(const std::string& mainDirectory) {
  return mainDirectory + "/config.dat";
}

bool canEnter(const std::string& directory) {
  std::error_code error;
  return std::filesystem::is_directory(directory, error) && ::access(directory.c_str(), X_OK) == 0;
}

}  // namespace

void RememberedDirectories::enterWhenSet(bool enter) {
  enterThem = enter;
}

bool RememberedDirectories::entersWhenSet() {
  return enterThem;
}

bool RememberedDirectories::set(Kind kind, const std::string& directory) {
  if (!kDirectoryRule.problem(directory).empty()) return false;
  const std::string path = existingPath(directory);
  if (!path.empty() && !(enterThem ? ::chdir(path.c_str()) == 0 : canEnter(path))) return false;
  directories[kind] = directory;
  return true;
}

const std::string& RememberedDirectories::get(Kind kind) {
  return directories[kind];
}

void RememberedDirectories::forget() {
  directories.fill({});
  enterThem = false;
}

void RememberedDirectories::readConfig(const std::string& mainDirectory) {
  TextReader in = TextReader::fromFile(configPath(mainDirectory));
  std::string line;
  for (int kind = 0; kind < kCount && in.readLine(line, kDirectoryRule.maxChars); ++kind)
    set(static_cast<Kind>(kind), line);
}

void RememberedDirectories::writeConfig(const std::string& mainDirectory) {
  TextWriter out(configPath(mainDirectory));
  for (const std::string& directory : directories) out << directory << '\n';
  out << '\n';
  static_cast<void>(out.commit());
}

}  // namespace tarvex
