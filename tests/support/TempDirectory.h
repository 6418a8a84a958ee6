#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tarvex::test {

// A fresh directory, removed with all that is in it at the end of the scope.
class TempDirectory {
 public:
  TempDirectory();
  ~TempDirectory();
  TempDirectory(const TempDirectory&) = delete;
  TempDirectory& operator=(const TempDirectory&) = delete;

  const std::string& path() const { return path_; }
  std::string file(const std::string& name) const { return path_ + '/' + name; }
  // Names of what lies in it, sorted: empty shows that nothing was left behind.
  std::vector<std::string> entries() const;

 private:
  std::string path_;
};

// An environment variable with another value until the end of the scope; without a value it is unset.
class ScopedEnvironment {
 public:
  ScopedEnvironment(std::string name, const std::optional<std::string>& value);
  ~ScopedEnvironment();
  ScopedEnvironment(const ScopedEnvironment&) = delete;
  ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

 private:
  static void put(const std::string& name, const std::optional<std::string>& value);

  std::string name_;
  std::optional<std::string> old_;
};

// The current directory, put back at the end of the scope.
class ScopedCurrentDirectory {
 public:
  ScopedCurrentDirectory();
  ~ScopedCurrentDirectory();
  ScopedCurrentDirectory(const ScopedCurrentDirectory&) = delete;
  ScopedCurrentDirectory& operator=(const ScopedCurrentDirectory&) = delete;

 private:
  std::string old_;
};

}  // namespace tarvex::test
