#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/Progress.h"
#include "parts/Part.h"

namespace tarvex {

class FactorList;
class TextReader;

// Cuts a sample file into those of its parts. The text of the rows stays what it is, digit by digit; a part's file has
// them, the factors and neither method nor statistics.
class PartSample {
 public:
  PartSample() = default;
  ~PartSample();
  PartSample(const PartSample&) = delete;
  PartSample& operator=(const PartSample&) = delete;

  // Looks through the file for where the rows of each part stand, and keeps it open: who replaces it changes nothing
  // here. False, with file and reason, when it can't be read or has other rows than the parts.
  [[nodiscard]] bool open(const std::string& path, const std::vector<Part>& parts, const FactorList& factors,
                          std::string& message, const Progress& progress = {});
  // Writes the sample of a part. False, with path and reason.
  [[nodiscard]] bool write(std::size_t part, const std::string& path, std::string& message) const;

 private:
  bool findCuts(TextReader& in, std::uint64_t size);
  bool appendText(std::uint64_t from, std::uint64_t to, std::string& text) const;

  std::vector<Part> parts_;
  std::string path_;
  std::string factors_;  // their record
  std::int32_t external_ = 0;
  std::int32_t columns_ = 0;
  std::int32_t order_ = 0;
  // Where the values of the parts end in the file, for each line of values that spans all rows: one for a table listed
  // by run, one a factor for a table listed by factor. The first of a line is where it begins.
  std::vector<std::uint64_t> cuts_;
  int fd_ = -1;
};

}  // namespace tarvex
