#include "app/ExternalRun.h"

#include <cstring>

#include "app/FrontEnd.h"
#include "base/Paths.h"
#include "model/ExternalProcess.h"

namespace tarvex {

namespace {

using State = ExternalProcess::State;

using namespace std::chrono_literals;
using std::chrono::steady_clock;

constexpr auto kStep = 500ms;  // from frame to frame of the animation

// Until the next frame is due, the process has ended or the user wants to stop.
void waitForFrame(ExternalProcess& process, FrontEnd& frontEnd) {
  const auto due = steady_clock::now() + kStep;
  while (steady_clock::now() < due && frontEnd.continueRun() && !process.wait(kEventSlice)) frontEnd.drainEvents();
}

// Running: the user wants to stop.
State waitForEnd(ExternalProcess& process, FrontEnd& frontEnd) {
  State state = State::Running;
  while (state == State::Running && frontEnd.continueRun()) {
    waitForFrame(process, frontEnd);
    frontEnd.animate();
    frontEnd.drainEvents();
    if (!frontEnd.continueRun()) break;
    state = process.poll();
  }
  return state;
}

}  // namespace

bool runExternalModel(const ExternalRun& run, FrontEnd& frontEnd) {
  ExternalProcess process;
  if (!process.start({existingPath(run.command.program),
                      run.command.arguments,
                      run.directory,
                      run.logFile,
                      -1,
                      {"TARVEX_OUTPUT=" + absolutePath(run.outputFile)}})) {
    frontEnd.message(MessageKind::Error, "Error",
                     std::string(kNotLoaded) + "\nError " + std::to_string(process.error()) + "\ncmd: " +
                         run.command.text() + '\n' + run.command.program + ": " + std::strerror(process.error()));
    return false;
  }
  frontEnd.openAnimation("External model execution", run.command.program, run.sampleFile);
  const State state = waitForEnd(process, frontEnd);
  if (state == State::Running) process.stop();
  if (state == State::Lost) frontEnd.message(MessageKind::Error, "Error", "Lost connection to model execution");
  frontEnd.closeProgress();
  if (state != State::Ended) return false;
  if (process.exitCode() == 0) return true;
  std::string text =
      "Model execution returned with error code\nThe code is " + std::to_string(process.exitCode()) + '.';
  if (!process.logPath().empty()) text += " What the model printed is in " + process.logPath() + '.';
  frontEnd.message(MessageKind::Error, "Error", text);
  return false;
}

}  // namespace tarvex
