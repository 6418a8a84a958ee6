#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tarvex {

class FactorList;
class TextReader;
class TextWriter;

// Groups of factors, by name, in the order in which they were made. Operations on unknown names return false, and so do
// those that would take a name that is none, is too long for a file, or is taken.
class FactorGroups {
 public:
  const std::vector<std::string>& groupNames() const { return groupNames_; }
  const std::vector<std::string>& elementNames() const { return elementNames_; }     // factors placed in a group
  const std::vector<std::int32_t>& elementGroups() const { return elementGroups_; }  // parallel: index of the group
  std::int32_t groupCount() const { return static_cast<std::int32_t>(groupNames_.size()); }
  std::int32_t elementCount() const { return static_cast<std::int32_t>(elementNames_.size()); }

  [[nodiscard]] bool addGroup(const std::string& name);
  [[nodiscard]] bool removeGroup(std::string_view name);  // with its elements
  [[nodiscard]] bool addElement(std::string_view groupName, const std::string& factorName);
  [[nodiscard]] bool removeElement(std::string_view factorName);

  std::int32_t groupSize(std::string_view name) const;  // -1 for an unknown name
  // The i-th factor of a group; null when there is none.
  const std::string* groupElement(std::string_view name, std::int32_t i) const;
  // Index of the group that holds a factor; -1 for none.
  std::int32_t groupOf(std::string_view factorName) const;

  // Why a test on these groups can't be made with the list: a group without members, a member that is no stochastic
  // factor of the list or is in two groups. Empty when it can.
  std::string objection(const FactorList& factors) const;

  // Two blocks: a count with a name a line, a count with the group's index and the factor's name a line.
  void write(TextWriter& out) const;
  [[nodiscard]] bool read(TextReader& in);

 private:
  std::int32_t groupIndex(std::string_view name) const;  // -1 for an unknown name

  std::vector<std::string> groupNames_;
  std::vector<std::string> elementNames_;
  std::vector<std::int32_t> elementGroups_;
};

}  // namespace tarvex
