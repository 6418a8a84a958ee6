#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "sampling/SamplerSettings.h"

namespace tarvex {

using SettingNumber = std::optional<std::int64_t> SamplerSettings::*;

// A field for a whole number above 0.
struct NumberSetting {
  const char* gadget;
  SettingNumber number;
  const char* refused;  // what ok says to anything else; null: what the sampler says
};

// A list of numbers to choose from.
struct ListSetting {
  // What is shown at first of a number that the list doesn't have; it is then offered behind the others.
  enum class Unlisted { Itself, First, NextBelow };

  const char* gadget;
  SettingNumber number;
  std::vector<std::int64_t> values;
  bool showsRuns;  // each entry is shown as the runs of its design, else as itself
  Unlisted atFirst;
};

// What the members of the family of method panels differ by: one row a method.
struct MethodKind {
  std::int32_t method;
  const char* file;
  const char* name;  // of the panel
  const char* title;
  std::vector<NumberSetting> numbers;  // in the order in which they are judged
  std::vector<ListSetting> lists;
};

// Requires: a method's number, 0 to 7.
const MethodKind& methodKind(std::int32_t method);

}  // namespace tarvex
