#pragma once

#include <sys/stat.h>

#include <string>

namespace tarvex {

// An output file as it is before a model starts, so that one left over from an earlier run isn't taken for the model's
// answer. The rule: the model wrote the file when, after its end, there is one that is another file (by device and
// number), or has another size or other times of change than before.
class OutputFileStamp {
 public:
  // Waits, up to two seconds where a file was written just now, until the clock by which the file system dates has gone
  // on: from then on anything that is written bears another time.
  explicit OutputFileStamp(const std::string& path);

  // "model.out: the model did not write it: ..."; empty when the file was written since, or is missing, which its
  // reader tells.
  std::string problem() const;

 private:
  std::string path_;
  bool existed_ = false;
  struct stat before_ {};
};

}  // namespace tarvex
