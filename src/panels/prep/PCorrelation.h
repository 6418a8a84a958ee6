#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "panels/prep/CorrelationDraft.h"
#include "toolkit/Panel.h"
#include "toolkit/Tree.h"
#include "toolkit/UndoStack.h"

namespace tarvex {

class CorrelationTable;
class SteinTable;

// Chooses how factors are correlated, and states the correlations: dependence tree, rank correlation matrix, Stein
// sample, a page each, and a preview of a pair. All is a draft: what is wrong with it stands in the message line until
// ok refuses it. The list given stays as it is, and outlives the panel.
class PCorrelation : public Panel {
 public:
  PCorrelation(const Display& display, const FactorList& factors, bool demo, QWidget* parent);
  ~PCorrelation() override;

  const CorrelationDraft& draft() const { return draft_; }
  UndoStack& undo() { return undo_; }
  // Whether anything was changed.
  bool modified() const { return steps_ > 0; }
  QString helpTopic() const override;

 protected:
  bool closing() override;

 private:
  enum Page { kTreePage = 0, kMatrixPage = 1, kSteinPage = 2, kPreviewPage = 3 };

  void addPages();
  void fillTables();
  void enter(const QString& name, const CorrelationDraft& after);
  void set(const CorrelationDraft& draft);
  void changeCorrType();
  void apply();
  void cancel();
  QString refusal();
  bool agreesToSwitch();
  void takeBack();
  void makeAgain();
  void clear();
  void tell(const QString& title, const QString& text);
  int page() const;
  void showPage(Page page);

  // The tree.
  void prepareTrees();
  void finishDrag();
  void duringDrag();
  void move(const TreeDrop& drop, bool intoTree);
  void link(int child, int parent, std::size_t at);
  void takeOut(int place);
  void takeFactor();
  void doubleClick();
  bool askValue(int child, int parent, double& value);

  // The matrix.
  QString edit(int row, int column, const QString& text);
  QString paste(int row, int column, const std::vector<QStringList>& block);
  void clearCells();
  void refuseCell(const QString& why);
  bool cellIsTaken();
  void checkValue();
  void nearest();
  bool findNearest(const std::vector<float>& matrix, std::vector<float>& nearest);
  void judge();
  void saveCorrTable();

  // The Stein sample.
  void steinCorr();
  void turnColumns(bool onwards);

  // The preview.
  void plot();
  void chooseLink();
  void pageChanged();
  QString showPreview();
  void choosePair(int first, int second);

  void refresh();
  void refreshTree();
  void refreshGadgets();
  void refreshColumns();
  QString situation();
  void say(const QString& text);

  bool demo_;
  CorrelationDraft draft_;
  UndoStack undo_;
  int steps_ = 0;  // from the list as it was; more than the stack remembers, maybe
  std::shared_ptr<CorrelationTable> table_;
  std::shared_ptr<SteinTable> stein_;
  std::shared_ptr<const FactorList> shownStein_;
  std::int32_t opened_;                                         // the mode of the list
  TreeDrop drop_;                                               // held or dropped last
  bool onTree_ = false;                                         // where
  QString refusedCell_;                                         // why a cell was refused, until it is told
  bool busy_ = false;                                           // at work on the nearest matrix,
  bool stopped_ = false;                                        // which the user has stopped
  std::shared_ptr<const std::vector<CorrelationCell>> judged_;  // of the matrix that the next two are of
  bool valid_ = true;
  double smallest_ = 0.0;  // eigenvalue of one that isn't valid
};

}  // namespace tarvex
