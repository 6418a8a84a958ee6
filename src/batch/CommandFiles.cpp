#include "batch/CommandFiles.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "base/Paths.h"
#include "base/TextWriter.h"

namespace tarvex {

namespace {

namespace fs = std::filesystem;

fs::path placeOf(const std::string& path) {
  return writtenPath(path);
}

// The file in the directory that is this one, or that it would be once it is made; empty when it doesn't lie there.
std::string nameWithin(const std::string& directory, const std::string& suffix, const std::string& file) {
  const fs::path place = placeOf(file);
  if (place.parent_path() == placeOf(directory) && place.extension() == suffix) return place.filename().string();
  std::error_code error;
  fs::directory_iterator entry(directory, error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    std::error_code ignored;
    if (entry->path().extension() == suffix && fs::equivalent(entry->path(), file, ignored))
      return entry->path().filename().string();
  }
  return {};
}

// Why no file could be made in it, or it couldn't be made itself; empty when nothing is known against it.
std::string whyNotFillable(const std::string& directory) {
  std::error_code error;
  fs::path place = placeOf(directory);
  while (!fs::exists(place, error) && place.has_relative_path()) place = place.parent_path();
  int reason = 0;
  if (!fs::is_directory(place, error))
    reason = ENOTDIR;
  else if (::access(place.c_str(), W_OK | X_OK) != 0)
    reason = errno;
  return reason == 0 ? "" : directory + ": " + std::strerror(reason);
}

}  // namespace

void CommandFiles::reads(const char* what, const std::string& path) {
  if (!path.empty()) files_.push_back({what, existingPath(path), false});
}

void CommandFiles::writes(const char* what, const std::string& path, const std::string& message) {
  if (!path.empty()) files_.push_back({what, path, true, message});
}

void CommandFiles::leavesToModel(const char* what, const std::string& path) {
  if (!path.empty()) files_.push_back({what, path, true});
}

void CommandFiles::fills(const char* what, const std::string& directory, std::string suffix,
                         const std::string& message) {
  if (!directory.empty()) files_.push_back({what, directory, true, message, std::move(suffix)});
}

bool CommandFiles::checkPair(const File& output, const File& other, std::string& message) const {
  const bool directories = !output.suffix.empty() && !other.suffix.empty();
  if (!directories && isSameFile(output.path, other.path)) {
    const std::string paths = output.path == other.path ? output.path : output.path + " and " + other.path;
    message = fmt::format("The {} to write and the {} are one file: {}\nNothing was done: name another file to write.",
                          output.what, other.what, paths);
    return false;
  }
  const std::string name =
      output.suffix.empty() || directories ? "" : nameWithin(output.path, output.suffix, other.path);
  if (name.empty()) return true;
  message = fmt::format(
      "The directory of the {} holds the {}, which one of them could replace: {}\nNothing was done: name "
      "another directory.",
      output.what, other.what, other.path);
  return false;
}

bool CommandFiles::check(std::string& message) const {
  for (const File& output : files_)
    for (const File& other : files_)
      if (output.written && &output != &other && !checkPair(output, other, message)) return false;
  for (const File& output : files_) {
    if (output.message.empty()) continue;
    const std::string reason = output.suffix.empty() ? whyNotWritable(output.path) : whyNotFillable(output.path);
    if (reason.empty()) continue;
    message = output.message + '\n' + reason;
    return false;
  }
  return true;
}

}  // namespace tarvex
