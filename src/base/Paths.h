#pragma once

#include <string>

namespace tarvex {

// `path` as it can be opened: paths in the system's files may come from a machine that separates directories by '\'. A
// path that doesn't exist as it stands is tried with '/' in their place; when neither exists, it is `path` itself.
std::string existingPath(const std::string& path);

// `path` as it goes on to mean the same file wherever the current directory moves. An empty one stays empty.
std::string absolutePath(const std::string& path);

}  // namespace tarvex
