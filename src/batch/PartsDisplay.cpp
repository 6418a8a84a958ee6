#include "batch/PartsDisplay.h"

#include <algorithm>

#include "parts/PartStates.h"
#include "parts/PartsText.h"

namespace tarvex {

namespace {

constexpr std::chrono::milliseconds kShown{250};

}  // namespace

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
