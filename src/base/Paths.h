#pragma once

#include <string>

namespace tarvex {

// `path` as it can be opened: paths in the system's files may come from a machine that separates directories by '\'. A
// path that doesn't exist as it stands is tried with '/' in their place; when neither exists, it is `path` itself.
std::string existingPath(const std::string& path);

// `path` as it goes on to mean the same file wherever the current directory moves. An empty one stays empty.
std::string absolutePath(const std::string& path);

// Where a writer puts the file: links are followed, also one that leads to nothing yet.
std::string writtenPath(const std::string& path);

// Whether both name one file, which hard links have too, or would once it is made. What goes to a terminal or to
// nowhere is no file, nor is an empty path.
bool isSameFile(const std::string& one, const std::string& other);

}  // namespace tarvex
