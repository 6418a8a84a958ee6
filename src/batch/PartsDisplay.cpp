#include "batch/PartsDisplay.h"

#include <fmt/format.h>

#include <cmath>

#include "parts/PartStates.h"

namespace tarvex {

namespace {

constexpr std::chrono::milliseconds kShown{250};

std::string timeText(double seconds) {
  const auto whole = std::llround(seconds);
  if (whole < 3600) return fmt::format("{}:{:02}", whole / 60, whole % 60);
  return fmt::format("{}:{:02}:{:02}", whole / 3600, whole / 60 % 60, whole % 60);
}

}  // namespace

std::string partsText(const PartStates& states) {
  std::string text = fmt::format("{} of {} parts", states.count(PartState::Done), states.size());
  const auto add = [&text](std::size_t count, const char* what) {
    if (count > 0) text += fmt::format(", {} {}", count, what);
  };
  add(states.count(PartState::Sent) + states.count(PartState::Begun), "running");
  add(states.count(PartState::Failed), "failed");
  add(states.count(PartState::Missing), "missing");
  const Part& last = states.parts().back();
  return text + fmt::format("; {} of {} runs", states.rowsIn(PartState::Done), last.first + last.rows);
}

std::string paceText(const PartStates& states, std::int32_t rowsDone, double seconds) {
  if (rowsDone <= 0 || seconds <= 0.0) return {};
  const double rate = rowsDone / seconds;
  const std::int32_t left =
      states.rowsIn(PartState::Open) + states.rowsIn(PartState::Sent) + states.rowsIn(PartState::Begun);
  return fmt::format("{:.3g} runs/s, {} left", rate, timeText(left / rate));
}

void PartsDisplay::show(const PartStates& states) {
  const std::int32_t rows = states.rowsIn(PartState::Done);
  if (rowsAtStart_ < 0) {
    rowsAtStart_ = rows;
    start_ = Clock::now();
  }
  if (!console_.isTerminal || Clock::now() < next_) return;
  next_ = Clock::now() + kShown;
  const std::chrono::duration<double> spent = Clock::now() - start_;
  std::string line = partsText(states);
  if (const std::string pace = paceText(states, rows - rowsAtStart_, spent.count()); !pace.empty()) line += "; " + pace;
  const std::size_t width = line.size();
  line.resize(std::max(width, width_), ' ');
  console_.errors << '\r' << line << std::flush;
  width_ = width;
}

void PartsDisplay::tell(const std::string& text) {
  erase();
  console_.errors << text << std::endl;
}

void PartsDisplay::erase() {
  if (width_ > 0) console_.errors << '\r' << std::string(width_, ' ') << '\r' << std::flush;
  width_ = 0;
}

}  // namespace tarvex
