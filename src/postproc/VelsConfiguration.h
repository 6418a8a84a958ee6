#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "postproc/OutputTable.h"
#include "postproc/SensitivityStats.h"
#include "postproc/UaStats.h"

namespace tarvex {

class ModelConfiguration;

struct VelsOutputRecord {
  std::string name;  // a line of at most 4095 characters, no two outputs alike
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

  // Clears everything, then takes the outputs with weight 1. Names that are alike are told apart as load() does. False,
  // with the reason and without outputs, when a record can't hold one of the names.
  [[nodiscard]] bool setOutputs(const std::vector<std::string>& names, std::string& message);
  // False when a record can't hold the text: a line of at most 4095 characters.
  [[nodiscard]] bool addVariable(const std::string& text);
  [[nodiscard]] bool removeVariable(std::int32_t index);
  void clearVariables();
  [[nodiscard]] bool setWeight(std::int32_t index, float value);  // false: negative, or no such output
  void prepareSensitivity(std::int32_t methodId);  // a fresh object of the method's class; none for an unknown method

  const std::vector<VelsOutputRecord>& outputs() const { return outputs_; }
  // The names under which variables ask for the outputs of `model`, in its order: those of this list, which holds them
  // in full. The model's own, where the list belongs to other results.
  std::vector<std::string> outputNames(const ModelConfiguration& model) const;
  const std::vector<std::string>& selectedVariables() const { return selectedVariables_; }
  std::unique_ptr<SensitivityStats> sensitivity;
  UaStats uncertainty;

  // The Vels record. load() works on this object: read into a temporary. When all is read it remembers the record's
  // directory. Of outputs that are alike the later ones get "_2", "_3" and so on behind their names.
  void save(TextWriter& out) const;
  [[nodiscard]] bool load(TextReader& in);
  // Which names the last load() or setOutputs() changed, a line each, for the user; empty for none.
  const std::string& changedNames() const { return changedNames_; }
  // The same of outputNames(): also those that the model's record changed, where its own are the ones to ask for.
  std::string changedNames(const ModelConfiguration& model) const;

 private:
  bool readOutputs(TextReader& in);
  bool isListOf(const ModelConfiguration& model) const;
  void tellApart();

  std::vector<VelsOutputRecord> outputs_;
  std::vector<std::string> selectedVariables_;
  std::string changedNames_;
};

}  // namespace tarvex
