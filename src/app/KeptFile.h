#pragma once

#include <string>

namespace tarvex {

// A file that is put aside, under its own name with ".before-trial" behind it, while something may write another one
// in its place, and put back afterwards; what was written is then gone. One that a program left aside that died is put
// back first.
class KeptFile {
 public:
  explicit KeptFile(std::string path);
  ~KeptFile();
  KeptFile(const KeptFile&) = delete;
  KeptFile& operator=(const KeptFile&) = delete;

  // Why it couldn't be put aside; empty: it was, or there is none.
  const std::string& problem() const { return problem_; }
  // Puts it back, as the end of the object does. Why that failed, and where it is; empty: it is back.
  std::string putBack();

 private:
  std::string path_;
  std::string aside_;
  bool isAside_ = false;
  bool isOurs_ = false;  // what stands in its place at the end
  std::string problem_;
};

}  // namespace tarvex
