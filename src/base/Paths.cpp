#include "base/Paths.h"

#include <unistd.h>

#include <algorithm>
#include <climits>

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

}  // namespace tarvex
