#pragma once

#include <memory>
#include <vector>

class QWidget;

namespace tarvex {

class Display;
class Panel;
class RunController;

// What the panels of results share: the study that they show, and the windows that stay open beside each other.
class ResultDesk {
 public:
  // All three outlive the desk; `parent` is the window that the panels belong to.
  ResultDesk(const Display& display, RunController& controller, QWidget* parent);
  ~ResultDesk();
  ResultDesk(const ResultDesk&) = delete;
  ResultDesk& operator=(const ResultDesk&) = delete;

  const Display& display() const { return display_; }
  RunController& controller() { return controller_; }
  QWidget* parent() const { return parent_; }

  // Shows a panel and keeps it until the user closes it.
  void open(std::unique_ptr<Panel> panel);
  // The open panels, in the order in which they were opened; valid until the next call.
  std::vector<Panel*> panels();
  // Closes all of them, as when another project takes the place of theirs.
  void closeAll();

 private:
  void forgetClosed();

  const Display& display_;
  RunController& controller_;
  QWidget* parent_;
  std::vector<std::unique_ptr<Panel>> panels_;
};

}  // namespace tarvex
