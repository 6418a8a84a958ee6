#include "app/LongOperation.h"

#include <algorithm>
#include <utility>

#include "app/FrontEnd.h"

namespace tarvex {

namespace {

using namespace std::chrono_literals;

constexpr auto kShownAfter = 200ms;  // a display of less than that only flickers
constexpr double kPercents = 100.0;

}  // namespace

LongOperation::LongOperation(FrontEnd& frontEnd, std::string title, std::int32_t rows)
    : frontEnd_(frontEnd), title_(std::move(title)), rows_(rows) {}

LongOperation::LongOperation(FrontEnd& frontEnd) : LongOperation(frontEnd, {}, 0) {}

LongOperation::~LongOperation() {
  if (percent_ >= 0) frontEnd_.closeProgress();
}

bool LongOperation::serve(double done) {
  const Clock::time_point now = Clock::now();
  const int percent = static_cast<int>(kPercents * std::clamp(done, 0.0, 1.0));
  const bool shown = !title_.empty() && now - start_ >= kShownAfter;
  if (shown && percent_ < 0) frontEnd_.openProgress(title_, rows_);
  if (shown && percent != percent_) frontEnd_.progress(percent_ = percent);
  if (now - served_ >= kEventSlice) {
    frontEnd_.drainEvents();
    served_ = Clock::now();
  }
  return frontEnd_.continueRun();
}

}  // namespace tarvex
