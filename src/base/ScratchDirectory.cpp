#include "base/ScratchDirectory.h"

#include <filesystem>
#include <system_error>

#include "base/Temporaries.h"
#include "base/WorkingFile.h"

namespace tarvex {

ScratchDirectory::ScratchDirectory() : path_(Temporaries::createDirectory(WorkingFile::directory())) {}

ScratchDirectory::~ScratchDirectory() {
  if (path_.empty()) return;
  std::error_code error;
  std::filesystem::remove_all(path_, error);
  Temporaries::forget(path_);
}

}  // namespace tarvex
