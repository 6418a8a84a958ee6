#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tarvex {

class InternalModel;
class PrepConfiguration;

// The factors of one run, for a model that is tried: a row of the sample, or the means.
struct TrialRow {
  static constexpr std::int32_t kMeans = -1;

  std::string title;                // "row 3 of the sample", "the means of the factors"
  std::vector<std::string> names;   // of the factors
  std::vector<double> values = {};  // as many; nan where there is none
};

// Row `row` of the sample, counted from 0, or kMeans: those of its columns, or of the factors where there is no sample.
// False, with the reason, without factors, for a row that isn't there and for a sample that can't be read.
[[nodiscard]] bool readTrialRow(const PrepConfiguration& prep, std::int32_t row, TrialRow& trial, std::string& message);

// What the inputs of `model` get of it: by place, as in a run, where there are as many inputs as factors, else by equal
// names; nan for those that get nothing.
std::vector<double> inputsOf(const InternalModel& model, const TrialRow& trial);

}  // namespace tarvex
