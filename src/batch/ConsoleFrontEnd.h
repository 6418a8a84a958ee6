#pragma once

#include <chrono>
#include <ostream>

#include "app/FrontEnd.h"
#include "batch/StopSignals.h"

namespace tarvex {

// The front end of a shell: messages and, on a terminal, a progress bar with percent, runs and time left on the error
// stream, or the time that a model has taken so far; Ctrl-C is the stop button. In a pipe no progress is shown.
class ConsoleFrontEnd : public FrontEnd {
 public:
  ConsoleFrontEnd(std::ostream& errors, bool isTerminal) : errors_(errors), isTerminal_(isTerminal) {}

  void openProgress(const std::string& title, std::int32_t rows) override;
  void progress(int percent) override;
  void status(const std::string& text) override;
  void closeProgress() override;
  void openAnimation(const std::string& title, const std::string& modelName, const std::string& fileName) override;
  void animate() override;
  void drainEvents() override {}
  bool continueRun() override { return !StopSignals::requested(); }
  void message(MessageKind kind, const std::string& title, const std::string& text) override;
  // Nobody is there to ask: no.
  bool question(const std::string& title, const std::string& text, const std::string& yes,
                const std::string& no) override;
  // The inputs take the sample's columns in their order.
  bool linkFactors(const FactorList& factors, InternalModel& model) override;
  bool linkOutputs(OutputLink& link) override;

 private:
  void show(std::string line);
  void eraseBar();

  std::ostream& errors_;
  bool isTerminal_;
  std::string title_;
  std::int32_t rows_ = 0;
  std::size_t shownWidth_ = 0;
  std::size_t frame_ = 0;
  std::chrono::steady_clock::time_point start_;
};

}  // namespace tarvex
