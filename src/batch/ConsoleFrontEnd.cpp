#include "batch/ConsoleFrontEnd.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace tarvex {

void ConsoleFrontEnd::openProgress(const std::string& title, std::int32_t rows) {
  title_ = title;
  rows_ = rows;
  start_ = std::chrono::steady_clock::now();
}

void ConsoleFrontEnd::progress(int percent) {
  if (!isTerminal_ || percent < 0 || percent > 100) return;
  constexpr int kBarWidth = 25;
  std::string line =
      fmt::format("{} [{:-<{}}] {:3}%", title_, std::string(static_cast<std::size_t>(percent * kBarWidth / 100), '#'),
                  kBarWidth, percent);
  if (rows_ > 0) line += fmt::format("  {} of {} runs", static_cast<std::int64_t>(rows_) * percent / 100, rows_);
  const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - start_;
  if (percent > 0) {
    const auto left = std::lround(spent.count() * (100 - percent) / percent);
    line += fmt::format("  {}:{:02} left", left / 60, left % 60);
  }
  show(std::move(line));
}

void ConsoleFrontEnd::openAnimation(const std::string& title, const std::string&, const std::string&) {
  openProgress(title, 0);
  frame_ = 0;
}

void ConsoleFrontEnd::animate() {
  constexpr std::string_view kFrames = "|/-\\";
  if (!isTerminal_) return;
  const auto spent =
      std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() - start_).count();
  show(fmt::format("{} {} {}:{:02}", title_, kFrames[frame_++ % kFrames.size()], spent / 60, spent % 60));
}

// In place of the line that is shown.
void ConsoleFrontEnd::show(std::string line) {
  const std::size_t width = line.size();
  line.resize(std::max(width, shownWidth_), ' ');
  errors_ << '\r' << line << std::flush;
  shownWidth_ = width;
}

void ConsoleFrontEnd::status(const std::string&) {}

void ConsoleFrontEnd::closeProgress() {
  eraseBar();
}

void ConsoleFrontEnd::eraseBar() {
  if (shownWidth_ == 0) return;
  errors_ << '\r' << std::string(shownWidth_, ' ') << '\r' << std::flush;
  shownWidth_ = 0;
}

void ConsoleFrontEnd::message(MessageKind kind, const std::string&, const std::string& text) {
  eraseBar();
  if (kind == MessageKind::Error && StopSignals::requested()) return;
  errors_ << (kind == MessageKind::Warning ? "warning: " : "") << text << '\n';
}

bool ConsoleFrontEnd::question(const std::string&, const std::string&, const std::string&, const std::string&) {
  return false;
}

bool ConsoleFrontEnd::linkFactors(const FactorList&, InternalModel&) {
  return true;
}

bool ConsoleFrontEnd::linkOutputs(OutputLink&) {
  return false;
}

}  // namespace tarvex
