#pragma once

#include <memory>

#include "toolkit/Panel.h"

namespace tarvex {

struct AnalysisSnapshot;
class ResultDesk;

// One measure of all uncertain factors of a variable, with one of them marked and put into words.
class PForecast : public Panel {
 public:
  // Requires: measures, a variable, a slot and a record that they have.
  PForecast(ResultDesk& desk, const std::shared_ptr<const AnalysisSnapshot>& snapshot, std::int32_t variable,
            std::int32_t slot, std::size_t record);
};

}  // namespace tarvex
