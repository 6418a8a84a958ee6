#include "base/Paths.h"

#include <unistd.h>

#include <algorithm>
#include <climits>
#include <filesystem>

namespace tarvex {

std::string existingPath(const std::string& path) {
  if (path.find('\\') == std::string::npos || ::access(path.c_str(), F_OK) == 0) return path;
  std::string slashed = path;
  std::replace(slashed.begin(), slashed.end(), '\\', '/');
  return ::access(slashed.c_str(), F_OK) == 0 ? slashed : path;
}

std::string absolutePath(const std::string& path) {
  char current[PATH_MAX];
  if (path.empty() || path.starts_with('/') || ::getcwd(current, sizeof current) == nullptr) return path;
  return std::string(current) + '/' + path;
}

std::string writtenPath(const std::string& path) {
  namespace fs = std::filesystem;
  constexpr int kMostLinks = 40;  // followed, as the kernel does
  std::error_code error;
  fs::path place = absolutePath(path);
  for (int i = 0; i < kMostLinks; ++i) {
    const fs::path to = fs::read_symlink(place, error);
    if (error) break;
    place = to.is_absolute() ? to : place.parent_path() / to;
  }
  const fs::path canonical = fs::weakly_canonical(place, error);
  return error ? place.lexically_normal() : canonical;
}

bool isSameFile(const std::string& one, const std::string& other) {
  std::error_code error;
  if (one.empty() || other.empty() || std::filesystem::is_character_file(one, error)) return false;
  if (std::filesystem::equivalent(one, other, error) && !error) return true;
  return writtenPath(one) == writtenPath(other);
}

}  // namespace tarvex
