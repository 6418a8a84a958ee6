#include "support/TempDirectory.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <utility>

namespace tarvex::test {

TempDirectory::TempDirectory() : path_((std::filesystem::temp_directory_path() / "tarvex-test-XXXXXX").string()) {
  if (::mkdtemp(path_.data()) == nullptr) ADD_FAILURE() << "cannot make " << path_;
}

TempDirectory::~TempDirectory() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::vector<std::string> TempDirectory::entries() const {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(path_)) names.push_back(entry.path().filename());
  std::sort(names.begin(), names.end());
  return names;
}

ScopedEnvironment::ScopedEnvironment(std::string name, const std::optional<std::string>& value)
    : name_(std::move(name)) {
  if (const char* old = std::getenv(name_.c_str())) old_ = old;
  put(name_, value);
}

ScopedEnvironment::~ScopedEnvironment() {
  put(name_, old_);
}

void ScopedEnvironment::put(const std::string& name, const std::optional<std::string>& value) {
  if (value)
    ::setenv(name.c_str(), value->c_str(), 1);
  else
    ::unsetenv(name.c_str());
}

ScopedCurrentDirectory::ScopedCurrentDirectory() : old_(std::filesystem::current_path()) {}

ScopedCurrentDirectory::~ScopedCurrentDirectory() {
  std::error_code ignored;
  std::filesystem::current_path(old_, ignored);
}

}  // namespace tarvex::test
