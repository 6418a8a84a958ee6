#include "parts/PartsText.h"

#include <fmt/format.h>

#include <cmath>

#include "parts/PartStates.h"
#include "parts/RunDirectory.h"
#include "parts/RunFollower.h"

namespace tarvex {

namespace {

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
  if (states.size() == 0) return text;
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

std::string failureText(const PartStates& states, std::size_t part) {
  return partText(part, states.parts()[part]) + " failed on " + states[part].host + ": " + states[part].text;
}

std::string driverText(const RunFollower& run) {
  if (!run.holder().empty())
    return "driven by " + run.holder() + ", engine " + engineWord(run.record().settings.engine);
  const std::string& ending = run.states().ending();
  if (ending == "done") return "the result is in " + run.record().resultFile;
  return ending.empty() ? "nobody drives it" : ending;
}

std::string missingText(const PartStates& states, const std::string& run) {
  const std::size_t missing = states.count(PartState::Missing);
  if (missing == 0) return {};
  return fmt::format(
      "{} part{} gave no results: {} runs are nan, and so are measures over them. They are repeated by `tarvex-batch "
      "resume {}`.",
      missing, missing == 1 ? "" : "s", states.rowsIn(PartState::Missing), run);
}

std::string workbookText(const RunRecord& record, const RunDirectory& directory, const PartStates& states) {
  if (record.workbook.empty()) return {};
  for (std::size_t part = 0; part < states.size(); ++part) {
    const PartState& state = states[part];
    if (state.stage != PartState::Done) continue;
    std::string text = contentOf(directory.attempt(static_cast<std::int32_t>(part), state.attempt) + "/log");
    text.erase(text.find_last_not_of('\n') + 1);
    return text;
  }
  return {};
}

}  // namespace tarvex
