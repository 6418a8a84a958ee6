#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace tarvex {

// Gets a title and a text for each message to the user.
using Warn = std::function<void(const std::string& title, const std::string& text)>;

// The names of a model's outputs as a file gives them, one after another: made fit for expressions and kept apart. The
// user is told of each name that is changed.
class OutputNames {
 public:
  explicit OutputNames(Warn warn) : warn_(std::move(warn)) {}

  // Takes the name that `cut` is of the text `full`. Characters that expressions can't hold become '_'; a name that is
  // there already gets "_2", "_3" ... behind it. False, with `reason`, for a name that is empty or, with a message,
  // begins with a digit.
  [[nodiscard]] bool add(const std::string& full, const std::string& cut, std::string& reason);
  // Takes a name whatever it holds, and only keeps it apart.
  void addApart(const std::string& full, const std::string& cut) { take(full, cut, cut); }

  std::size_t size() const { return names_.size(); }
  // The names as they were given, where one of them was changed; else none.
  std::vector<std::string> given() const { return isChanged_ ? given_ : std::vector<std::string>(); }
  std::vector<std::string> release() { return std::move(names_); }

 private:
  void take(const std::string& full, const std::string& cut, const std::string& fit);

  Warn warn_;
  std::vector<std::string> names_;
  std::vector<std::string> given_;
  bool isChanged_ = false;
  std::unordered_map<std::string, std::int32_t> last_;  // by name: the last number tried behind it
};

}  // namespace tarvex
