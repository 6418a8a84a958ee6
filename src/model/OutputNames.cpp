#include "model/OutputNames.h"

#include <algorithm>

namespace tarvex {

namespace {

constexpr std::string_view kSpecial = " /*-+()|!$&=?'^[]#@,;.:<>\\\"";

bool isSpecial(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte < ' ' || byte >= 127 || kSpecial.find(c) != std::string_view::npos;
}

}  // namespace

bool fitOutputName(std::string& name, const Warn& warn) {
  if (name.empty()) return false;
  if (name.front() >= '0' && name.front() <= '9') {
    warn("Error", "Incorrect model variable name: " + name);
    return false;
  }
  const std::string before = name;
  std::ranges::replace_if(name, isSpecial, '_');
  if (name != before) warn("Warning", "The model variable " + before + " will be modified in " + name);
  return true;
}

}  // namespace tarvex
