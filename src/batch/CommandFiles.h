#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarvex {

// The files that a command reads and writes, all named before anything is done: one that is two of them under whatever
// path, link or spelling is refused, and so is an output that couldn't be written once the work is done. An empty path
// stands for a file that isn't asked for.
class CommandFiles {
 public:
  // `what` completes "the ...": "factor file".
  void reads(const char* what, const std::string& path);
  // `message` is the system's for an output that can't be written.
  void writes(const char* what, const std::string& path, const std::string& message);
  // One that a model of the user's writes, where and how is its own affair.
  void leavesToModel(const char* what, const std::string& path);
  // A directory for files with this suffix, whose names are known only later.
  void fills(const char* what, const std::string& directory, std::string suffix, const std::string& message);

  // False, with a sentence for the user, unless the command may begin.
  [[nodiscard]] bool check(std::string& message) const;

 private:
  struct File {
    const char* what;
    std::string path;
    bool written;
    std::string message = {};  // of a failed write; empty: nothing is known of it
    std::string suffix = {};   // of the files in a directory; empty: no directory
  };

  [[nodiscard]] bool checkPair(const File& output, const File& other, std::string& message) const;

  std::vector<File> files_;
};

}  // namespace tarvex
