#include "postproc/OutputReference.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/NumberText.h"
#include "model/ModelConfiguration.h"

namespace tarvex {

namespace {

constexpr std::string_view kMaximumText = "max";
// Times further apart than this share of their size can't print alike at six digits.
constexpr double kAlike = 2e-5;

bool isWordChar(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

bool printAlike(double a, double b) {
  return std::fabs(a - b) <= kAlike * std::fabs(a) && numberText(a) == numberText(b);
}

// The output whose name stands at `position`, where a word begins, as a whole word; -1 for none.
std::int32_t outputAt(std::string_view text, const std::vector<std::string>& names, std::size_t position) {
  std::int32_t found = -1;
  std::size_t length = 0;
  for (std::size_t i = 0; i < names.size(); ++i) {
    const std::size_t end = position + names[i].size();
    if (names[i].size() <= length || text.substr(position, names[i].size()) != names[i]) continue;
    if (end < text.size() && isWordChar(text[end])) continue;
    found = static_cast<std::int32_t>(i);
    length = names[i].size();
  }
  return found;
}

}  // namespace

std::string maximumName(const std::string& output) {
  return output + "[max]";
}

std::string timeName(const std::string& output, double time) {
  return output + '[' + numberText(time) + ']';
}

OutputReference::Parsed OutputReference::parse(std::string_view text, const std::vector<std::string>& outputNames,
                                               std::size_t& position, OutputReference& reference) {
  const std::int32_t output = outputAt(text, outputNames, position);
  if (output < 0) return Parsed::kNone;
  reference = OutputReference();
  reference.output_ = output;
  position += outputNames[static_cast<std::size_t>(output)].size();
  if (position >= text.size() || text[position] != '[') return Parsed::kReference;

  const std::size_t close = text.find(']', position);
  if (close == std::string_view::npos) return Parsed::kBadBracket;
  const std::string_view inside = text.substr(position + 1, close - position - 1);
  position = close + 1;
  if (inside == kMaximumText) {
    reference.kind_ = kMaximum;
    return Parsed::kReference;
  }
  reference.kind_ = kAtTime;
  const bool isTime = isNumber(inside, reference.time_) && std::isfinite(reference.time_);
  return isTime ? Parsed::kReference : Parsed::kBadBracket;
}

void OutputReference::findTime(const ModelConfiguration& model, std::int32_t run) {
  placed_ = true;
  before_ = after_ = -1;
  for (std::int32_t i = 0; i < model.results.timeCount(run); ++i) {
    const double stored = model.results.time(run, i);
    if (printAlike(stored, time_)) {
      before_ = after_ = i;
      return;
    }
    if (stored < time_ && (before_ < 0 || stored > model.results.time(run, before_))) before_ = i;
    if (stored > time_ && (after_ < 0 || stored < model.results.time(run, after_))) after_ = i;
  }
  if (before_ < 0) before_ = std::max(after_, 0);
  if (after_ < 0) after_ = before_;
  if (before_ == after_) return;
  const double first = model.results.time(run, before_);
  fraction_ = (time_ - first) / (model.results.time(run, after_) - first);
}

double OutputReference::value(const ModelConfiguration& model, std::int32_t run, const std::vector<double>& values) {
  const auto at = [&](std::int32_t time) {
    return values[static_cast<std::size_t>(time) * static_cast<std::size_t>(model.results.outputCount()) +
                  static_cast<std::size_t>(output_)];
  };
  if (kind_ == kFirstTime) return at(0);
  if (kind_ == kMaximum) {
    double maximum = std::numeric_limits<double>::quiet_NaN();
    for (std::int32_t i = 0; i < model.results.timeCount(run); ++i) maximum = std::fmax(maximum, at(i));
    return maximum;
  }
  const bool sharedTimes = model.results.timeMode() == kNoTimeAxis || model.results.timeMode() == kSharedGrid;
  if (!placed_ || !sharedTimes) findTime(model, run);
  return before_ == after_ ? at(before_) : at(before_) + fraction_ * (at(after_) - at(before_));
}

}  // namespace tarvex
