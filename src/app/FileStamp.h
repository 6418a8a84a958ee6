#pragma once

#include <cstdint>
#include <string>

namespace tarvex {

// By this it is seen whether a file is still the one that it was: which file stands under a path, its size and when it
// was last changed.
class FileStamp {
 public:
  FileStamp() = default;  // of no file
  explicit FileStamp(const std::string& path);

  bool exists() const { return exists_; }
  // Two stamps of no file are equal.
  bool operator==(const FileStamp&) const = default;

 private:
  bool exists_ = false;
  std::uint64_t device_ = 0;
  std::uint64_t number_ = 0;
  std::int64_t size_ = 0;
  std::int64_t written_ = 0;  // nanoseconds
  std::int64_t changed_ = 0;  // the file's entry, which a restored time of writing changes too
};

}  // namespace tarvex
