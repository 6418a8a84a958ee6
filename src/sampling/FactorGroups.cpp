#include "sampling/FactorGroups.h"

#include <algorithm>

#include "base/Names.h"
#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "factors/FactorList.h"

namespace tarvex {

namespace {

constexpr std::size_t kMaxName = 80;  // of a line of the section

// Whether a section can keep the name.
bool canKeep(std::string_view name) {
  return isValidName(name) && name.size() <= kMaxName;
}

// The position of `name`; -1 when it isn't there.
std::int32_t positionOf(const std::vector<std::string>& names, std::string_view name) {
  const auto found = std::find(names.begin(), names.end(), name);
  return found == names.end() ? -1 : static_cast<std::int32_t>(found - names.begin());
}

}  // namespace

std::int32_t FactorGroups::groupIndex(std::string_view name) const {
  return positionOf(groupNames_, name);
}

bool FactorGroups::addGroup(const std::string& name) {
  if (!canKeep(name) || groupIndex(name) >= 0) return false;
  groupNames_.push_back(name);
  return true;
}

bool FactorGroups::removeGroup(std::string_view name) {
  const std::int32_t group = groupIndex(name);
  if (group < 0) return false;
  for (std::size_t i = elementNames_.size(); i-- > 0;) {
    const auto place = static_cast<std::ptrdiff_t>(i);
    if (elementGroups_[i] == group) {
      elementNames_.erase(elementNames_.begin() + place);
      elementGroups_.erase(elementGroups_.begin() + place);
    } else if (elementGroups_[i] > group) {
      --elementGroups_[i];
    }
  }
  groupNames_.erase(groupNames_.begin() + group);
  return true;
}

bool FactorGroups::addElement(std::string_view groupName, const std::string& factorName) {
  const std::int32_t group = groupIndex(groupName);
  if (group < 0 || !canKeep(factorName)) return false;
  elementNames_.push_back(factorName);
  elementGroups_.push_back(group);
  return true;
}

bool FactorGroups::removeElement(std::string_view factorName) {
  const std::int32_t place = positionOf(elementNames_, factorName);
  if (place < 0) return false;
  elementNames_.erase(elementNames_.begin() + place);
  elementGroups_.erase(elementGroups_.begin() + place);
  return true;
}

std::int32_t FactorGroups::groupSize(std::string_view name) const {
  const std::int32_t group = groupIndex(name);
  if (group < 0) return -1;
  return static_cast<std::int32_t>(std::count(elementGroups_.begin(), elementGroups_.end(), group));
}

const std::string* FactorGroups::groupElement(std::string_view name, std::int32_t i) const {
  const std::int32_t group = groupIndex(name);
  if (group < 0 || i < 0) return nullptr;
  for (std::size_t element = 0; element < elementNames_.size(); ++element)
    if (elementGroups_[element] == group && i-- == 0) return &elementNames_[element];
  return nullptr;
}

std::int32_t FactorGroups::groupOf(std::string_view factorName) const {
  const std::int32_t place = positionOf(elementNames_, factorName);
  return place < 0 ? -1 : elementGroups_[static_cast<std::size_t>(place)];
}

std::string FactorGroups::objection(const FactorList& factors) const {
  for (const std::string& group : groupNames_)
    if (groupSize(group) == 0) return "Group's cardinality equal to 0";
  for (std::size_t i = 0; i < elementNames_.size(); ++i) {
    const std::string& name = elementNames_[i];
    const std::string subject = "Group " + groupNames_[static_cast<std::size_t>(elementGroups_[i])] + ": " + name;
    const std::int32_t f = factors.indexOf(name);
    if (f < 0) return subject + " is not a factor of the list";
    if (!factors.factor(f).isStochastic()) return subject + " is a constant or a relation";
    if (positionOf(elementNames_, name) != static_cast<std::int32_t>(i)) return subject + " is in a group already";
  }
  return {};
}

void FactorGroups::write(TextWriter& out) const {
  out << groupNames_.size() << " groups:\n";
  for (const std::string& name : groupNames_) out << name << '\n';
  out << elementNames_.size() << " elements in groups\n";
  for (std::size_t i = 0; i < elementNames_.size(); ++i) out << elementGroups_[i] << '\t' << elementNames_[i] << '\n';
}

bool FactorGroups::read(TextReader& in) {
  constexpr std::uint64_t kLeastElement = 2;  // an index and a tab
  *this = {};
  std::int32_t count = 0;
  in.expect("the number of groups") >> count;
  in.skipLine();
  if (!in.checkCount(count, 1)) return false;
  std::string name;
  for (std::int32_t i = 0; i < count; ++i) {
    if (!in.expect("the name of a group").readLine(name, kMaxName)) return false;
    groupNames_.push_back(name);
  }
  in.expect("the number of elements in groups") >> count;
  in.skipLine();
  if (!in.checkCount(count, kLeastElement)) return false;
  for (std::int32_t i = 0; i < count; ++i) {
    std::int32_t group = -1;
    in.expect("the group of a factor") >> group;
    if (in.ok() && (group < 0 || group >= groupCount())) return in.refuse("there is no group " + std::to_string(group));
    if (!in.skipPast('\t', 1) || !in.expect("the name of a factor").readLine(name, kMaxName)) return false;
    elementGroups_.push_back(group);
    elementNames_.push_back(name);
  }
  return true;
}

}  // namespace tarvex
