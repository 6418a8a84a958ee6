#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tarvex::test {

// A fresh directory, removed with all that is in it at the end of the scope.
class TempDirectory {
 public:
  TempDirectory() : path_((std::filesystem::temp_directory_path() / "tarvex-test-XXXXXX").string()) {
    if (::mkdtemp(path_.data()) == nullptr) ADD_FAILURE() << "cannot make " << path_;
  }
  ~TempDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempDirectory(const TempDirectory&) = delete;
  TempDirectory& operator=(const TempDirectory&) = delete;

  const std::string& path() const { return path_; }
  std::string file(const std::string& name) const { return path_ + '/' + name; }
  // Names of what lies in it, sorted: empty shows that nothing was left behind.
  std::vector<std::string> entries() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_)) names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
  }

 private:
  std::string path_;
};

// An environment variable with another value until the end of the scope; without a value it is unset.
class ScopedEnvironment {
 public:
  ScopedEnvironment(std::string name, const std::optional<std::string>& value) : name_(std::move(name)) {
    if (const char* old = std::getenv(name_.c_str())) old_ = old;
    put(value);
  }
  ~ScopedEnvironment() { put(old_); }
  ScopedEnvironment(const ScopedEnvironment&) = delete;
  ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

 private:
  void put(const std::optional<std::string>& value) const {
    value ? ::setenv(name_.c_str(), value->c_str(), 1) : ::unsetenv(name_.c_str());
  }

  std::string name_;
  std::optional<std::string> old_;
};

// The current directory, put back at the end of the scope.
class ScopedCurrentDirectory {
 public:
  ScopedCurrentDirectory() : old_(std::filesystem::current_path()) {}
  ~ScopedCurrentDirectory() {
    std::error_code ignored;
    std::filesystem::current_path(old_, ignored);
  }
  ScopedCurrentDirectory(const ScopedCurrentDirectory&) = delete;
  ScopedCurrentDirectory& operator=(const ScopedCurrentDirectory&) = delete;

 private:
  std::filesystem::path old_;
};

}  // namespace tarvex::test
