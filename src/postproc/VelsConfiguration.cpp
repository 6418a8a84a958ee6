#include "postproc/VelsConfiguration.h"

#include <set>

#include "base/RememberedDirectories.h"
#include "base/TextReader.h"
#include "base/TextRules.h"
#include "base/TextWriter.h"
#include "model/ModelConfiguration.h"
#include "postproc/NumberLine.h"

namespace tarvex {

namespace {

constexpr LineRule kVariableRule{"the text of a variable", 4095};
constexpr LineRule kOutputRule{"the name of an output", 4095};
constexpr LineRule kDirectoryRule{"the directory of post-processor files", 4095};
constexpr std::int32_t kNoStatistics = -1;    // in the place of the statistics block's number
constexpr std::uint64_t kMinOutputBytes = 3;  // the end of the name's line, a digit, a line's end

}  // namespace

VelsConfiguration::VelsConfiguration(const VelsConfiguration& other)
    : sensitivity(other.sensitivity ? other.sensitivity->clone() : nullptr),
      uncertainty(other.uncertainty),
      outputs_(other.outputs_),
      selectedVariables_(other.selectedVariables_),
      changedNames_(other.changedNames_) {}

VelsConfiguration& VelsConfiguration::operator=(const VelsConfiguration& other) {
  if (this != &other) *this = VelsConfiguration(other);
  return *this;
}

bool VelsConfiguration::setOutputs(const std::vector<std::string>& names, std::string& message) {
  *this = VelsConfiguration();
  for (const std::string& name : names) {
    message = kOutputRule.problem(name);
    if (!message.empty()) {
      outputs_.clear();
      return false;
    }
    outputs_.push_back({name, 1.0f});
  }
  tellApart();
  return true;
}

void VelsConfiguration::tellApart() {
  std::set<std::string> taken;
  for (const VelsOutputRecord& output : outputs_) taken.insert(output.name);
  std::set<std::string> seen;
  for (VelsOutputRecord& output : outputs_) {
    if (seen.insert(output.name).second) continue;
    const std::string before = output.name;
    for (int number = 2; !taken.insert(output.name).second; ++number) {
      const std::string ending = "_" + std::to_string(number);
      output.name = before.substr(0, kOutputRule.maxChars - ending.size()) + ending;
    }
    seen.insert(output.name);
    changedNames_ +=
        (changedNames_.empty() ? "" : "\n") + ("The model variable " + before) + " will be modified in " + output.name;
  }
}

std::string VelsConfiguration::changedNames(const ModelConfiguration& model) const {
  if (isListOf(model) || model.warningText.empty()) return changedNames_;
  return changedNames_ + (changedNames_.empty() ? "" : "\n") + model.warningText;
}

bool VelsConfiguration::isListOf(const ModelConfiguration& model) const {
  return outputs_.size() == model.results.outputNames().size();
}

std::vector<std::string> VelsConfiguration::outputNames(const ModelConfiguration& model) const {
  if (!isListOf(model)) return model.results.outputNames();
  std::vector<std::string> names;
  for (const VelsOutputRecord& output : outputs_) names.push_back(output.name);
  return names;
}

bool VelsConfiguration::addVariable(const std::string& text) {
  if (!kVariableRule.problem(text).empty()) return false;
  selectedVariables_.push_back(text);
  return true;
}

bool VelsConfiguration::removeVariable(std::int32_t index) {
  if (index < 0 || static_cast<std::size_t>(index) >= selectedVariables_.size()) return false;
  selectedVariables_.erase(selectedVariables_.begin() + index);
  return true;
}

void VelsConfiguration::clearVariables() {
  selectedVariables_.clear();
}

bool VelsConfiguration::setWeight(std::int32_t index, float value) {
  if (index < 0 || static_cast<std::size_t>(index) >= outputs_.size() || !(value >= 0.0f)) return false;
  outputs_[static_cast<std::size_t>(index)].weight = value;
  return true;
}

void VelsConfiguration::prepareSensitivity(std::int32_t methodId) {
  sensitivity = makeSensitivityForMethod(methodId);
}

void VelsConfiguration::save(TextWriter& out) const {
  out << selectedVariables_.size() << '\n';
  for (const std::string& text : selectedVariables_) kVariableRule.write(out, text);
  out << outputs_.size() << '\n';
  for (const VelsOutputRecord& output : outputs_) {
    kOutputRule.write(out, output.name);
    out << output.weight << '\n';
  }
  kDirectoryRule.write(out, RememberedDirectories::get(RememberedDirectories::Vels));
  if (sensitivity) {
    out << static_cast<std::int32_t>(sensitivity->typeId()) << '\n';
    sensitivity->write(out);
  } else {
    out << kNoStatistics << '\n';
  }
  uncertainty.write(out);
}

bool VelsConfiguration::load(TextReader& in) {
  *this = VelsConfiguration();
  std::int32_t count = 0;
  in.expect("the number of selected variables") >> count;
  finishNumberLine(in);
  in.checkCount(count, 1);
  std::string text;
  for (std::int32_t i = 0; i < count && kVariableRule.read(in, text); ++i) selectedVariables_.push_back(text);
  if (!readOutputs(in)) return false;
  std::string directory;
  kDirectoryRule.read(in, directory);
  std::int32_t typeId = kNoStatistics;
  if ((in.expect("the number of the statistics") >> typeId).fail()) return false;
  sensitivity = makeSensitivityOfType(typeId);
  if (sensitivity) sensitivity->read(in);
  uncertainty.read(in);
  if (in.fail()) return false;
  RememberedDirectories::set(RememberedDirectories::Vels, directory);
  return true;
}

bool VelsConfiguration::readOutputs(TextReader& in) {
  std::int32_t count = 0;
  in.expect("the number of outputs") >> count;
  finishNumberLine(in);
  if (!in.checkCount(count, kMinOutputBytes)) return false;
  // Kept: a record without outputs can be written but not read.
  if (count == 0) return in.refuse("the number of outputs must be at least 1, not 0");
  for (std::int32_t i = 0; i < count && in.ok(); ++i) {
    VelsOutputRecord output;
    float weight = output.weight;
    kOutputRule.read(in, output.name);
    in.expect("the weight of an output") >> weight;
    finishNumberLine(in);
    if (weight >= 0.0f) output.weight = weight;
    outputs_.push_back(std::move(output));
  }
  tellApart();
  return in.ok();
}

}  // namespace tarvex
