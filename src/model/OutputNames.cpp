#include "model/OutputNames.h"

#include <algorithm>
#include <string_view>

namespace tarvex {

namespace {

constexpr std::string_view kSpecial = " /*-+()|!$&=?'^[]#@,;.:<>\\\"";

bool isSpecial(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte < ' ' || byte >= 127 || kSpecial.find(c) != std::string_view::npos;
}

}  // namespace

bool OutputNames::add(const std::string& full, const std::string& cut, std::string& reason) {
  if (cut.empty()) {
    reason = "expected the name of an output, found " + (full.empty() ? "nothing" : "'" + full + "'");
    return false;
  }
  if (cut.front() >= '0' && cut.front() <= '9') {
    warn_("Error", "Incorrect model variable name: " + cut);
    reason = "the name of an output must not begin with a digit, as '" + cut + "' does";
    return false;
  }
  std::string fit = cut;
  std::ranges::replace_if(fit, isSpecial, '_');
  take(full, cut, fit);
  return true;
}

void OutputNames::take(const std::string& full, const std::string& cut, const std::string& fit) {
  std::string name = fit;
  const bool isNew = last_.try_emplace(name, 1).second;
  if (!isNew) {
    do name = fit + '_' + std::to_string(++last_[fit]);
    while (!last_.try_emplace(name, 1).second);
  }
  given_.push_back(isNew ? cut : full);
  isChanged_ = isChanged_ || name != cut;
  // What is cut off behind a name is no part of it, unless that is what made two names equal.
  if (name != cut) warn_("Warning", "The model variable " + given_.back() + " will be modified in " + name);
  names_.push_back(std::move(name));
}

}  // namespace tarvex
