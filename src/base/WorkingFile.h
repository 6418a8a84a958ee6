#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace tarvex {

// A nameless binary file for data beyond memory, in the directory of TEMP, else TMPDIR, else the system's temporary
// directory. It is created exclusively, readable by the user alone, and unlinked as soon as it is open: nothing stays
// behind, however the process ends.
class WorkingFile {
 public:
  WorkingFile() = default;  // created at the first write
  ~WorkingFile();
  WorkingFile(const WorkingFile&) = delete;
  WorkingFile& operator=(const WorkingFile&) = delete;
  WorkingFile(WorkingFile&& other) noexcept;
  WorkingFile& operator=(WorkingFile&& other) noexcept;

  // Bytes at `offset`, all or failure. A read of what was never written gives zeros; a failure of the system gives
  // false with directory and reason in errorText().
  [[nodiscard]] bool read(std::uint64_t offset, void* data, std::size_t size) const;
  [[nodiscard]] bool write(std::uint64_t offset, const void* data, std::size_t size);
  // Drops the content and the file.
  void clear();
  // "Cannot write the working file in /tmp: No space left on device".
  const std::string& errorText() const { return errorText_; }

  static std::string directory();

 private:
  [[nodiscard]] bool create();
  bool fail(const char* what, int error) const;  // always false

  int fd_ = -1;
  std::string directory_;  // in which it was created: TEMP may change
  mutable std::string errorText_;
};

}  // namespace tarvex
