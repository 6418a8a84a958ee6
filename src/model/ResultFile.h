#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "base/WorkingFile.h"

namespace tarvex {

// A growing sequence of doubles of any length: appended at its end and read anywhere, mostly forward. The end that
// fits the buffer stays in memory, so a small sequence never touches the disk.
class ResultFile {
 public:
  ResultFile() = default;
  ResultFile(ResultFile&&) noexcept = default;
  ResultFile& operator=(ResultFile&&) noexcept = default;

  // The whole content. On false the system gave no room, with the reason in errorText, and this is as it was.
  [[nodiscard]] bool copyFrom(const ResultFile& other);
  [[nodiscard]] bool append(const double* values, std::size_t count);
  // `count` values from number `first` on; those behind the end are nan. False when the system fails.
  [[nodiscard]] bool read(std::uint64_t first, double* values, std::size_t count) const;
  void cut(std::uint64_t size);  // drops the values from this one on
  void clear();
  // Why the last operation failed, directory and reason of the system included.
  const std::string& errorText() const { return errorText_; }
  std::uint64_t size() const { return flushed_ + pending_.size(); }

 private:
  static constexpr std::size_t kBufferValues = 32768;

  [[nodiscard]] bool flush();
  [[nodiscard]] bool readFromDisk(std::uint64_t first, double* values, std::size_t count) const;

  WorkingFile file_;
  std::uint64_t flushed_ = 0;    // values on disk
  std::vector<double> pending_;  // values behind those
  bool broken_ = false;          // values were lost
  mutable std::string errorText_;
  mutable std::vector<double> window_;  // read ahead of the disk
  mutable std::uint64_t windowFirst_ = 0;
};

}  // namespace tarvex
