#include "panels/vels/PastMeasures.h"

#include <utility>

#include "app/RunController.h"

namespace tarvex {

PastMeasures::PastMeasures(RunController& controller, std::shared_ptr<const AnalysisSnapshot> shown,
                           std::function<void()> replaced)
    : controller_(controller), shown_(std::move(shown)), replaced_(std::move(replaced)) {
  past_ = areReplaced();
  subscription_ = controller.subscribe([this](Changes) {
    if (past_ || !areReplaced()) return;
    past_ = true;
    replaced_();
  });
}

bool PastMeasures::areReplaced() const {
  return !controller_.busy() && controller_.analysis()->sensitivity != shown_->sensitivity;
}

QString PastMeasures::text() const {
  return past_ ? ". Past: sample, results, selection or level have changed since." : "";
}

}  // namespace tarvex
