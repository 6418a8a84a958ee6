#include "panels/vels/ResultDesk.h"

#include <utility>

#include "toolkit/Panel.h"

namespace tarvex {

ResultDesk::ResultDesk(const Display& display, RunController& controller, QWidget* parent)
    : display_(display), controller_(controller), parent_(parent) {}

ResultDesk::~ResultDesk() = default;

void ResultDesk::open(std::unique_ptr<Panel> panel) {
  forgetClosed();
  if (panel->show()) panels_.push_back(std::move(panel));
}

std::vector<Panel*> ResultDesk::panels() {
  forgetClosed();
  std::vector<Panel*> open;
  for (const auto& panel : panels_) open.push_back(panel.get());
  return open;
}

void ResultDesk::closeAll() {
  panels_.clear();
}

// A panel may be in a callback of its own while it closes, so it goes only when the next one comes.
void ResultDesk::forgetClosed() {
  std::erase_if(panels_, [](const auto& panel) { return !panel->isVisible(); });
}

}  // namespace tarvex
