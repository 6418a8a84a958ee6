#pragma once

#include <string>

namespace tarvex {

// The file that takes what a model prints. Its first line says so: a file without that line belongs to somebody else
// and is never touched; the log then goes to a file with a number in its name.
class ModelLog {
 public:
  ModelLog() = default;
  ~ModelLog() { close(); }
  ModelLog(const ModelLog&) = delete;
  ModelLog& operator=(const ModelLog&) = delete;

  // Makes the log at `path`, or at "path.2", "path.3" ..., and empties one that is there. False: no log.
  [[nodiscard]] bool open(const std::string& path);
  void close();
  int descriptor() const { return fd_; }
  const std::string& path() const { return path_; }  // that was made; empty: none

  // Drops the middle of a log that has grown beyond bounds; its beginning and its end stay.
  void trim();

 private:
  [[nodiscard]] bool reopen(const std::string& path);

  std::string path_;
  int fd_ = -1;
};

}  // namespace tarvex
