#pragma once

#include <memory>
#include <string>
#include <vector>

#include "app/Changes.h"
#include "panels/vels/TimeChoice.h"

class QWidget;

namespace tarvex {

class Display;
class Panel;
class RunController;
class Selection;

// The most often that a plot is drawn anew while the time or its settings are dragged.
inline constexpr int kRedrawMilliseconds = 80;

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

  // The one selection of the study's runs, which all plots and tables share: columns of all factors and of the analysed
  // variables, or of all outputs while none is. It is read when it is first asked for, and again after the sample or
  // the results have changed; variables that were analysed since join it. Null when it can't be read, which has been
  // said.
  std::shared_ptr<Selection> selection();
  // False for one that was read of an earlier sample or of earlier results.
  bool isPresent(const Selection& selection) const { return selection_.get() == &selection; }

  // The time that the panels show, of outputs that are variables at several times.
  TimeChoice& time() { return time_; }

  // Shows a panel and keeps it until the user closes it.
  void open(std::unique_ptr<Panel> panel);
  // The open panels, in the order in which they were opened; valid until the next call.
  std::vector<Panel*> panels();

 private:
  void forgetClosed();
  void forgetRuns(Changes changes);
  std::vector<std::string> columnNames();

  const Display& display_;
  RunController& controller_;
  QWidget* parent_;
  std::shared_ptr<Selection> selection_;
  ChangeNotifier::Subscription subscription_;
  TimeChoice time_;
  std::vector<std::unique_ptr<Panel>> panels_;
};

}  // namespace tarvex
