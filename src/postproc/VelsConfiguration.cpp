#include "postproc/VelsConfiguration.h"

#include "base/RememberedDirectories.h"
#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "postproc/NumberLine.h"

namespace tarvex {

namespace {

constexpr std::size_t kMaxTextChars = 4095;
constexpr std::int32_t kNoStatistics = -1;    // in the place of the statistics block's number
constexpr std::uint64_t kMinOutputBytes = 3;  // the end of the name's line, a digit, a line's end

}  // namespace

VelsConfiguration::VelsConfiguration(const VelsConfiguration& other)
    : dirty(other.dirty),
      sensitivity(other.sensitivity ? other.sensitivity->clone() : nullptr),
      uncertainty(other.uncertainty),
      outputs_(other.outputs_),
      selectedVariables_(other.selectedVariables_) {}

VelsConfiguration& VelsConfiguration::operator=(const VelsConfiguration& other) {
  if (this != &other) *this = VelsConfiguration(other);
  return *this;
}

void VelsConfiguration::setOutputs(const std::vector<std::string>& names) {
  *this = VelsConfiguration();
  for (const std::string& name : names) outputs_.push_back({name.substr(0, kMaxTextChars), 1.0f});
}

void VelsConfiguration::addVariable(const std::string& text) {
  selectedVariables_.push_back(text);
  dirty = true;
}

bool VelsConfiguration::removeVariable(std::int32_t index) {
  if (index < 0 || static_cast<std::size_t>(index) >= selectedVariables_.size()) return false;
  selectedVariables_.erase(selectedVariables_.begin() + index);
  dirty = true;
  return true;
}

void VelsConfiguration::clearVariables() {
  selectedVariables_.clear();
  dirty = true;
}

bool VelsConfiguration::setWeight(std::int32_t index, float value) {
  if (index < 0 || static_cast<std::size_t>(index) >= outputs_.size() || !(value >= 0.0f)) return false;
  outputs_[static_cast<std::size_t>(index)].weight = value;
  return true;
}

void VelsConfiguration::prepareSensitivity(std::int32_t methodId) {
  sensitivity = makeSensitivityForMethod(methodId);
}

void VelsConfiguration::adoptSensitivity(const SensitivityStats& other) {
  sensitivity = other.clone();
}

void VelsConfiguration::save(TextWriter& out) const {
  out << selectedVariables_.size() << '\n';
  for (const std::string& text : selectedVariables_) out << text << '\n';
  out << outputs_.size() << '\n';
  for (const VelsOutputRecord& output : outputs_) out << output.name << '\n' << output.weight << '\n';
  out << RememberedDirectories::get(RememberedDirectories::Vels) << '\n';
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
  std::string line;
  std::int32_t count = 0;
  in >> count;
  finishNumberLine(in);
  in.checkCount(count, 1);
  for (std::int32_t i = 0; i < count && in.readLine(line, kMaxTextChars); ++i) selectedVariables_.push_back(line);
  in >> count;
  finishNumberLine(in);
  // Kept: a record without outputs can be written but not read.
  if (!in.checkCount(count, kMinOutputBytes) || count == 0) in.setFail();
  for (std::int32_t i = 0; i < count && in.ok(); ++i) {
    VelsOutputRecord output;
    float weight = output.weight;
    in.readLine(output.name, kMaxTextChars);
    in >> weight;
    finishNumberLine(in);
    outputs_.push_back(std::move(output));
    setWeight(i, weight);
  }
  std::string directory;
  in.readLine(directory, kMaxTextChars);
  std::int32_t typeId = kNoStatistics;
  in >> typeId;
  if (in.fail()) return false;
  sensitivity = makeSensitivityOfType(typeId);
  if (sensitivity) sensitivity->read(in);
  uncertainty.read(in);
  if (in.fail()) return false;
  RememberedDirectories::set(RememberedDirectories::Vels, directory);
  return true;
}

}  // namespace tarvex
