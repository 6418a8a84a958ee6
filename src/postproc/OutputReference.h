#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tarvex {

class ModelConfiguration;

// The name of an output's maximum over time, as it is analysed: "%s[max]".
std::string maximumName(const std::string& output);
// The same of its value at a time: "%s[%g]".
std::string timeName(const std::string& output, double time);

// One value of a run: an output at its first time, at its maximum over time, or at a time.
class OutputReference {
 public:
  enum Kind { kFirstTime, kMaximum, kAtTime };

  // Reads a reference that begins at text[position]: an output's name as a whole word, the longest that fits, with the
  // bracket that follows directly. Moves `position` behind it. kNone: no output's name stands there. kBadBracket: what
  // is in the bracket is neither "max" nor a time.
  enum class Parsed { kReference, kNone, kBadBracket };
  static Parsed parse(std::string_view text, const std::vector<std::string>& outputNames, std::size_t& position,
                      OutputReference& reference);

  std::int32_t output() const { return output_; }
  Kind kind() const { return kind_; }
  double time() const { return time_; }
  bool isSameAs(const OutputReference& other) const {
    return output_ == other.output_ && kind_ == other.kind_ && time_ == other.time_;
  }

  // The value in a run, whose values are in the order of ModelConfiguration::readRun. A stored time counts when it
  // prints alike; between stored times runs a straight line; outside of them holds the first or the last one. The
  // maximum passes over values that are not numbers.
  double value(const ModelConfiguration& model, std::int32_t run, const std::vector<double>& values);

 private:
  void findTime(const ModelConfiguration& model, std::int32_t run);

  std::int32_t output_ = 0;
  Kind kind_ = kFirstTime;
  double time_ = 0.0;
  // Where time_ lies in the grid of the last run: between two of its times, and how far from the first to the second.
  bool placed_ = false;
  std::int32_t before_ = 0;
  std::int32_t after_ = 0;
  double fraction_ = 0.0;
};

}  // namespace tarvex
