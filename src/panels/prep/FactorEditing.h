#pragma once

#include <QStringList>
#include <functional>
#include <memory>
#include <vector>

#include "factors/FactorList.h"
#include "toolkit/UndoStack.h"

namespace tarvex {

// A factor list under edit. Every change makes a new list and can be undone; one that is refused, with the reason,
// makes none. The default truncations, which a list's file holds too, are part of what changes.
class FactorEditing {
 public:
  // `changed` is called after each change, also of undo and redo.
  FactorEditing(std::shared_ptr<const FactorList> list, std::function<void()> changed);

  const FactorList& list() const { return *state_.list; }
  std::shared_ptr<const FactorList> shared() const { return state_.list; }
  bool modified() const { return modified_; }
  void setSaved() { modified_ = false; }
  UndoStack& undo() { return undo_; }
  // Puts the default truncations back to what they were at the start.
  void restoreDefaults() const;

  // Each drops a Stein sample whose columns it would change the meaning of: dropsStein() says so beforehand.
  bool add(std::unique_ptr<Factor> factor, QString& problem);
  bool replace(int place, std::unique_ptr<Factor> factor, QString& problem);
  // What is written into the cells of one column of some rows; the name of one row alone.
  bool setCells(const std::vector<int>& places, int column, const QString& text, QString& problem);
  // Rows of cells: name, distribution, parameters with truncations. A name that is known changes that factor, another
  // adds one; a name alone adds one of `kind`. A row of headings is passed over.
  bool paste(const std::vector<QStringList>& rows, const std::string& kind, QString& problem);
  bool remove(const std::vector<int>& places, QString& problem);
  // Moves factors, which keep their order, in front of the one at `before`.
  bool move(const std::vector<int>& places, int before, QString& problem);
  // Another list, and the default truncations as they now are: of a file, of a panel.
  void take(const QString& name, FactorList list);
  // The change of default truncations that has just been made, and truncations of factors.
  bool setTruncations(const std::vector<int>& places, double left, double right, QString& problem);

  // Whether a factor of this kind in this place would change what the Stein sample stands for; a place of -1 is a new
  // one.
  bool dropsStein(int place, const Factor& factor) const;

 private:
  struct State {
    std::shared_ptr<const FactorList> list;
    double left, right;  // default truncations
  };
  using Operation = std::function<bool(FactorList&, QString&)>;
  bool change(const QString& name, const Operation& operation, QString& problem);
  void enter(const QString& name, const State& after);
  void set(const State& state);

  State state_;
  State start_;
  std::function<void()> changed_;
  UndoStack undo_;
  bool modified_ = false;
};

}  // namespace tarvex
