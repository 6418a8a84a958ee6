#pragma once

#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace tarvex {

// The files that a command leaves in a directory, which is made when it doesn't exist. They are written aside and
// appear there together, when all of them are complete; until then there is no directory either.
class ResultDirectory {
 public:
  explicit ResultDirectory(std::string path);
  ~ResultDirectory();
  ResultDirectory(const ResultDirectory&) = delete;
  ResultDirectory& operator=(const ResultDirectory&) = delete;

  // Has a file written, named after the variable and what it shows of it: '_' stands for what file names had better
  // not hold, and a number behind a name that was there before. `write` gets the path and tells whether it succeeded,
  // else the path and the reason; after a failure nothing more is written.
  void add(const std::string& variable, std::string_view what, std::string_view suffix,
           const std::function<bool(const std::string& path, std::string& problem)>& write);
  // Puts the files in their place. False when one of them failed, as problem() says: "out/Y-pie.svg: No space left on
  // device".
  [[nodiscard]] bool finish();

  bool ok() const { return problem_.empty(); }
  const std::string& problem() const { return problem_; }

 private:
  std::string freeName(const std::string& variable, std::string_view what, std::string_view suffix);

  std::string path_;
  std::string aside_;   // a directory of its own, inside it or inside the one that will hold it
  int asideError_ = 0;  // an errno: why there is none
  std::vector<std::string> names_;
  std::set<std::string> taken_;
  std::string problem_;
};

}  // namespace tarvex
