#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "postproc/OutputTable.h"
#include "postproc/SensitivityStats.h"
#include "postproc/UaStats.h"

namespace tarvex {

struct VelsOutputRecord {
  std::string name;  // at most 4095 characters
  float weight = 1.0f;
};

// What the post-processor keeps between analyses: the outputs, the variables chosen among them, the last statistics.
class VelsConfiguration {
 public:
  VelsConfiguration() = default;
  VelsConfiguration(const VelsConfiguration& other);
  VelsConfiguration& operator=(const VelsConfiguration& other);
  VelsConfiguration(VelsConfiguration&&) = default;
  VelsConfiguration& operator=(VelsConfiguration&&) = default;
  ~VelsConfiguration() = default;

  // Clears everything, then takes the outputs with weight 1.
  void setOutputs(const std::vector<std::string>& names);
  void addVariable(const std::string& text);
  bool removeVariable(std::int32_t index);
  void clearVariables();
  bool setWeight(std::int32_t index, float value);  // false: negative, or no such output
  void prepareSensitivity(std::int32_t methodId);   // a fresh object of the method's class; none for an unknown method
  void adoptSensitivity(const SensitivityStats& other);  // a deep copy

  const std::vector<VelsOutputRecord>& outputs() const { return outputs_; }
  const std::vector<std::string>& selectedVariables() const { return selectedVariables_; }
  bool dirty = false;  // set by every change of the selection
  std::unique_ptr<SensitivityStats> sensitivity;
  UaStats uncertainty;

  // The Vels record. load() works on this object: read into a temporary. When all is read it remembers the record's
  // directory.
  void save(TextWriter& out) const;
  [[nodiscard]] bool load(TextReader& in);

 private:
  std::vector<VelsOutputRecord> outputs_;
  std::vector<std::string> selectedVariables_;
};

}  // namespace tarvex
