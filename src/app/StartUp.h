#pragma once

#include <cstdint>
#include <string>

namespace tarvex {

// The start-up file, Tarvex.cfg in the current directory: the main directory in the first line and the installation
// mark in the second, 0 as long as the demonstration files have not been repaired.
class StartUp {
 public:
  static constexpr const char* kFileName = "./Tarvex.cfg";

  // Reads the file, sets MainDirectory, repairs the demonstration files at the mark 0, which becomes 1, and writes the
  // file back; one that can't be written goes unnoticed. A mark that can't be read counts as 0. False, with the message
  // for the user, when there is no file or no directory in it: nothing is changed then.
  [[nodiscard]] bool run();

  const std::string& errorText() const { return errorText_; }
  std::int32_t mark() const { return mark_; }

 private:
  std::int32_t mark_ = 0;
  std::string errorText_;
};

}  // namespace tarvex
