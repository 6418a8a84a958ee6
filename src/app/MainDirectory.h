#pragma once

#include <string>
#include <vector>

namespace tarvex {

// Where this session's installation lies: one text for the whole program, set by the start and by nobody else. Empty
// before that, and in programs that need no installation.
class MainDirectory {
 public:
  static const std::string& get();
  static void set(const std::string& directory);

  // Where panel files are searched, in this order: those of the pre-processor, the main program with the model's
  // execution, the post-processor.
  static std::vector<std::string> panelDirectories();
};

}  // namespace tarvex
