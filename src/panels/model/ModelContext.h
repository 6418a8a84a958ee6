#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "model/TrialRow.h"

namespace tarvex {

class ModelChoice;
struct TrialReport;

// What the panels of a model know of the study that it belongs to.
struct ModelContext {
  std::vector<std::string> factors = {};  // their names, which a new model takes for its inputs
  std::int32_t rows = 0;                  // of the sample
  // readTrialRow() of the study; empty where there is none.
  std::function<bool(std::int32_t row, TrialRow& trial, std::string& message)> trialRow = {};
  // RunController::tryModel() of the study.
  std::function<void(const ModelChoice& choice, std::int32_t row, const std::function<bool()>& serve,
                     TrialReport& report)>
      tryModel = {};
};

}  // namespace tarvex
