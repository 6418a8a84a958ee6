#include "base/Paths.h"

#include <unistd.h>

#include <algorithm>

namespace tarvex {

std::string existingPath(const std::string& path) {
  if (path.find('\\') == std::string::npos || ::access(path.c_str(), F_OK) == 0) return path;
  std::string slashed = path;
  std::replace(slashed.begin(), slashed.end(), '\\', '/');
  return ::access(slashed.c_str(), F_OK) == 0 ? slashed : path;
}

}  // namespace tarvex
