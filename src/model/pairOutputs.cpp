#include "model/pairOutputs.h"

#include <algorithm>

namespace tarvex {

std::vector<std::string> pairOutputs(const std::vector<std::string>& given, const std::vector<std::string>& kept,
                                     const std::vector<std::string>& former) {
  const auto isKnown = [](const std::vector<std::string>& names, const std::string& name) {
    return std::ranges::find(names, name) != names.end();
  };
  auto left = former.begin();
  std::vector<std::string> names = kept;
  for (std::size_t i = 0; i < kept.size(); ++i) {
    if (given[i] == kept[i] || isKnown(former, kept[i])) continue;
    left = std::find_if(left, former.end(), [&](const std::string& name) { return !isKnown(kept, name); });
    if (left == former.end()) break;
    names[i] = *left++;
  }
  return names;
}

}  // namespace tarvex
