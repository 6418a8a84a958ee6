#pragma once

#include <memory>
#include <utility>

#include "app/FrontEnd.h"
#include "panels/main/PExternalModel.h"
#include "panels/main/PGenerate.h"

namespace tarvex {

// Asks, tells and shows progress by panels over the main window.
class PanelFrontEnd : public FrontEnd {
 public:
  explicit PanelFrontEnd(const Display& display) : display_(display) {}

  // The window that dialogs belong to; set once it is there.
  void setParent(QWidget* parent) { parent_ = parent; }
  // From now on everything in progress is to stop: the program ends.
  void stop() { stopped_ = true; }
  // Whether the user has stopped the latest work that showed its progress; asked a second time, no.
  bool takeStop() { return std::exchange(panelStopped_, false); }

  void openProgress(const std::string& title, std::int32_t rows) override;
  void progress(int percent) override;
  void status(const std::string& text) override;
  void closeProgress() override;
  void openAnimation(const std::string& title, const std::string& modelName, const std::string& fileName) override;
  void animate() override;
  void drainEvents() override;
  bool continueRun() override;
  void message(MessageKind kind, const std::string& title, const std::string& text) override;
  bool question(const std::string& title, const std::string& text, const std::string& yes,
                const std::string& no) override;
  bool linkFactors(const FactorList& factors, InternalModel& model) override;
  bool linkOutputs(OutputLink& link) override;

 private:
  template <class Progress>
  void showPanel(Progress& panel);

  const Display& display_;
  QWidget* parent_ = nullptr;
  bool stopped_ = false;
  bool panelStopped_ = false;
  std::unique_ptr<PGenerate> generate_;
  std::unique_ptr<PExternalModel> external_;
};

}  // namespace tarvex
