#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "panels/vels/PastMeasures.h"
#include "panels/vels/TimeSlider.h"
#include "toolkit/Panel.h"

namespace tarvex {

struct AnalysisSnapshot;
class ResultDesk;

// One measure of all uncertain factors of a variable, with one of them marked and put into words. It follows the time
// that is picked.
class PForecast : public Panel {
 public:
  // Requires: measures, a variable, a slot and a record that they have.
  PForecast(ResultDesk& desk, const std::shared_ptr<const AnalysisSnapshot>& snapshot, std::int32_t variable,
            std::int32_t slot, std::size_t record);

 private:
  void show(std::int32_t variable);

  std::shared_ptr<const AnalysisSnapshot> snapshot_;
  std::int32_t variable_;
  std::int32_t slot_;
  std::size_t record_;
  TimeSlider slider_;
  PastMeasures past_;
};

}  // namespace tarvex
