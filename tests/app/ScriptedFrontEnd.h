#pragma once

#include <functional>
#include <string>
#include <vector>

#include "app/FrontEnd.h"

namespace tarvex::test {

// A front end that notes every call in order and answers as it was told to.
class ScriptedFrontEnd : public FrontEnd {
 public:
  int stopAtPercent = -1;  // from this percentage on the user wants to stop
  bool stopAtOnce = false;
  bool answer = true;  // to every question
  bool acceptLink = true;
  std::function<void(InternalModel&)> link;    // what the user does in the link panel
  std::function<void(OutputLink&)> linkNames;  // and in that of the outputs; without it they are left
  std::function<void()> events;                // what the user does while an operation goes on
  std::function<void()> frame;                 // what happens during a step of an animation
  int stopAtFrame = -1;                        // after this many steps the user wants to stop

  std::vector<std::string> calls;
  std::vector<int> percents;
  int frames = 0;

  void openProgress(const std::string& title, std::int32_t) override { calls.push_back("open " + title); }
  void progress(int percent) override { percents.push_back(percent); }
  void status(const std::string& text) override { calls.push_back("status " + text); }
  void closeProgress() override { calls.push_back("close"); }
  void openAnimation(const std::string& title, const std::string& model, const std::string& file) override {
    calls.push_back("open " + title + ": " + model + ", " + file);
  }
  void animate() override {
    ++frames;
    if (frame) frame();
  }
  void drainEvents() override {
    if (events) events();
  }
  bool continueRun() override {
    if (stopAtOnce || (stopAtFrame >= 0 && frames >= stopAtFrame)) return false;
    return stopAtPercent < 0 || percents.empty() || percents.back() < stopAtPercent;
  }
  void message(MessageKind, const std::string& title, const std::string& text) override {
    calls.push_back(title + ": " + text);
  }
  bool question(const std::string& title, const std::string& text, const std::string& yes,
                const std::string& no) override {
    calls.push_back(title + "? " + text + ' ' + yes + ' ' + no);
    return answer;
  }
  bool linkOutputs(OutputLink& asked) override {
    calls.push_back("link outputs");
    if (linkNames) linkNames(asked);
    return linkNames != nullptr;
  }
  bool linkFactors(const FactorList&, InternalModel& model) override {
    calls.push_back("link");
    if (link) link(model);
    return acceptLink;
  }
};

}  // namespace tarvex::test
