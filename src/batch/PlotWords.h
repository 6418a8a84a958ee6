#pragma once

#include <string>
#include <vector>

namespace tarvex {

// The words of a list, split at its commas but for those inside brackets: an expression stays whole.
std::vector<std::string> splitList(const std::string& list);
// The words of several lists.
std::vector<std::string> splitLists(const std::vector<std::string>& lists);

// A bound on the values of a factor or variable.
struct NamedRange {
  std::string name;
  double lower = 0.0;
  double upper = 0.0;
};

// "NAME=LOWER:UPPER". False, with a sentence for the user, for anything else and for bounds that leave no room.
[[nodiscard]] bool parseRange(const std::string& text, NamedRange& range, std::string& message);

}  // namespace tarvex
