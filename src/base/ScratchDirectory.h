#pragma once

#include <string>

namespace tarvex {

// A directory of this process beside its working files, gone with the object and all that it holds.
class ScratchDirectory {
 public:
  ScratchDirectory();
  ~ScratchDirectory();
  ScratchDirectory(const ScratchDirectory&) = delete;
  ScratchDirectory& operator=(const ScratchDirectory&) = delete;

  const std::string& path() const { return path_; }  // empty with errno: none could be made

 private:
  std::string path_;
};

}  // namespace tarvex
