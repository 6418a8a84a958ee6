#pragma once

#include <memory>

#include "app/Changes.h"
#include "panels/vels/TimeSlider.h"
#include "plots/RunTable.h"
#include "toolkit/Panel.h"

class QListWidget;
class QListWidgetItem;

namespace tarvex {

class ResultDesk;
class RunSheet;
class Selection;

// Factors and variables together: chosen columns of the runs as a sheet, and opened as a scattergram or a cobweb. Those
// of outputs at a time follow the time that is picked.
class PVisualSA : public Panel {
 public:
  PVisualSA(ResultDesk& desk, std::shared_ptr<Selection> selection);

 private:
  void addPages();
  void fillList(const char* name, bool factors);
  void addItem(QListWidget& list, std::size_t column, bool coloured);
  void right();
  void left();
  void deSelect();
  void selectAvailable();
  void scatter();
  void cobwebs();
  void turnColumns(int step);
  void saveTable();
  void refresh();
  void pickTime();
  std::vector<std::size_t> selected();
  std::vector<std::size_t> picked(const char* list);
  void followController();

  ResultDesk& desk_;
  std::shared_ptr<Selection> selection_;
  std::shared_ptr<const RunTable> table_;  // of the selection
  std::shared_ptr<RunSheet> sheet_;
  TimeSlider slider_;
  ChangeNotifier::Subscription subscription_;
};

// The panel over the desk's selection. Opens nothing, after a message, where the runs can't be read.
void openVisualSA(ResultDesk& desk);

}  // namespace tarvex
