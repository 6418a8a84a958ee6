#include "parts/SiteSettings.h"

#include <charconv>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace tarvex {

namespace {

constexpr std::int32_t kMostSeconds = 3600;

bool readSeconds(const std::string& value, std::int32_t least, std::int32_t& seconds) {
  std::int32_t number = 0;
  const char* const end = value.data() + value.size();
  const auto parsed = std::from_chars(value.data(), end, number);
  if (parsed.ec != std::errc() || parsed.ptr != end || number < least || number > kMostSeconds) return false;
  seconds = number;
  return true;
}

bool takeLine(const std::string& line, SiteSettings& site) {
  const std::size_t blank = line.find_first_of(" \t");
  const std::string word = line.substr(0, blank);
  const std::size_t start = line.find_first_not_of(" \t", blank);
  const std::string value = start == std::string::npos ? "" : line.substr(start);
  if (value.empty()) return false;
  if (word == "option")
    site.options.push_back(value);
  else if (word == "prologue")
    site.prologue += value + '\n';
  else if (word == "directory")
    site.directory = value;
  else if (word == "grace")
    return readSeconds(value, 0, site.grace);
  else if (word == "poll")
    return readSeconds(value, 1, site.poll);
  else
    return false;
  return true;
}

}  // namespace

std::string SiteSettings::path() {
  if (const char* const config = std::getenv("XDG_CONFIG_HOME"); config != nullptr && *config == '/')
    return std::string(config) + "/tarvex/cluster";
  const char* const home = std::getenv("HOME");
  return home == nullptr ? "" : std::string(home) + "/.config/tarvex/cluster";
}

bool SiteSettings::load(std::string& message) {
  const std::string file = path();
  std::error_code error;
  if (file.empty() || !std::filesystem::exists(file, error)) return true;
  std::ifstream in(file);
  std::string line;
  SiteSettings read;
  for (int number = 1; std::getline(in, line); ++number) {
    const std::size_t end = line.find_last_not_of(" \t\r");
    line.resize(end == std::string::npos ? 0 : end + 1);
    line.erase(0, line.find_first_not_of(" \t"));
    if (line.empty() || line.front() == '#' || takeLine(line, read)) continue;
    message = "The settings of the cluster can't be used.\n" + file + ':' + std::to_string(number) +
              ": expected option, prologue, directory, grace or poll and what it sets, found '" + line + "'";
    return false;
  }
  if (!in.eof()) {
    message = "The settings of the cluster can't be used.\n" + file + ": it can't be read";
    return false;
  }
  *this = std::move(read);
  return true;
}

}  // namespace tarvex
