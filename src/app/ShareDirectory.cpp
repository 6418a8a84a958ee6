#include "app/ShareDirectory.h"

#include <cstdlib>
#include <filesystem>

namespace tarvex {

std::string shareDirectory() {
  if (const char* given = std::getenv("TARVEX_SHARE"); given != nullptr && *given != '\0') return given;
  std::error_code error;
  std::filesystem::path directory = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
  for (; directory != directory.parent_path(); directory = directory.parent_path())
    for (const char* place : {"share/tarvex", "share"})
      if (std::filesystem::exists(directory / place / "Demo", error)) return (directory / place).string();
  return {};
}

}  // namespace tarvex
