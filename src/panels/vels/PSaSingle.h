#pragma once

#include <memory>

#include "panels/vels/PastMeasures.h"
#include "panels/vels/SaTable.h"
#include "panels/vels/TimeSlider.h"
#include "toolkit/Panel.h"

namespace tarvex {

struct AnalysisSnapshot;
class ResultDesk;

// All measures of one variable as a sheet, with the colours of their significance. It follows the time that is picked.
class PSaSingle : public Panel {
 public:
  // Requires: measures, and a variable that they have.
  PSaSingle(ResultDesk& desk, std::shared_ptr<const AnalysisSnapshot> snapshot, std::int32_t variable);

 private:
  void show(std::int32_t variable);
  void saveTable();
  void doppioClick();

  ResultDesk& desk_;
  std::shared_ptr<const AnalysisSnapshot> snapshot_;
  std::int32_t variable_;
  std::vector<std::int32_t> slots_;
  std::shared_ptr<SaTable> table_;
  TimeSlider slider_;
  PastMeasures past_;
};

}  // namespace tarvex
