#pragma once

#include <cstdint>
#include <string>

namespace tarvex {

// Where everything of a run in parts lies. The path is one from the root.
class RunDirectory {
 public:
  explicit RunDirectory(std::string path) : path_(std::move(path)) {}

  const std::string& path() const { return path_; }
  std::string record() const { return path_ + "/run.json"; }
  std::string ledger() const { return path_ + "/ledger"; }
  std::string lock() const { return path_ + "/lock"; }
  std::string script() const { return path_ + "/job.sh"; }
  std::string workbook(const std::string& original) const;  // what of a model that is one the parts compute in
  std::string marks() const { return path_ + "/marks"; }
  std::string stopMark() const { return marks() + "/stop"; }
  std::string againMark(std::int32_t part) const { return marks() + '/' + partName(part) + ".again"; }
  std::string parts() const { return path_ + "/parts"; }
  // A part's number as names have it: four digits, or more where they are needed.
  static std::string partName(std::int32_t part);
  std::string attempt(std::int32_t part, std::int32_t attempt) const;  // a directory of its own for each
  std::string mark(std::int32_t part, std::int32_t attempt, const char* what) const;

 private:
  std::string path_;
};

// Makes a directory and those above it. False, with "path: reason".
[[nodiscard]] bool makeDirectories(const std::string& path, std::string& message);
// A small file written in one go, not flushed to the disk. False, with "path: reason".
[[nodiscard]] bool writePlainFile(const std::string& path, const std::string& text, std::string& message);
// A text with a line end, of which the last line that isn't empty is wanted; at most so many characters of it. Empty
// without such a file.
std::string lastLineOf(const std::string& path);
// The whole of a small file; empty without one.
std::string contentOf(const std::string& path);

}  // namespace tarvex
