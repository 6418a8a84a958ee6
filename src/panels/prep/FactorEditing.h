#pragma once

#include <QStringList>
#include <functional>
#include <memory>
#include <vector>

#include "factors/DefaultTruncations.h"
#include "factors/FactorList.h"
#include "toolkit/UndoStack.h"

namespace tarvex {

// A factor list under edit. Every change makes a new list and can be undone; one that is refused, with the reason,
// makes none. The default truncations, which a list's file holds too, are part of what changes.
class FactorEditing {
 public:
  struct Asks {
    std::function<void()> changed;       // called after each change, also of undo and redo
    std::function<bool()> mayDropStein;  // whether the user gives up the Stein sample for the change
  };
  FactorEditing(std::shared_ptr<const FactorList> list, Asks asks);

  const FactorList& list() const { return *state_.list; }
  std::shared_ptr<const FactorList> shared() const { return state_.list; }
  // A change that was undone is none.
  bool modified() const { return state_.list != saved_; }
  void setSaved() { saved_ = state_.list; }
  UndoStack& undo() { return undo_; }
  // Puts the default truncations back to what they were at the start.
  void restoreDefaults() const { start_.restore(); }

  // Each asks before it gives up a Stein sample, which it does where the sample's columns would stand for other
  // factors. A no is a refusal without a reason.
  bool add(std::unique_ptr<Factor> factor, QString& problem);
  bool replace(int place, std::unique_ptr<Factor> factor, QString& problem);
  // What is written into the cells of one column of some rows; the name of one row alone.
  bool setCells(const std::vector<int>& places, int column, const QString& text, QString& problem);
  // Rows of cells: name, distribution, parameters with truncations. A name that is known changes that factor, another
  // adds one; a name alone adds one of `kind`. A row of headings is passed over.
  bool paste(const std::vector<QStringList>& rows, const std::string& kind, QString& problem);
  // The same from a column behind the name on: distributions or parameters of the factors from `place` on.
  bool pasteCells(int place, int column, const std::vector<QStringList>& rows, QString& problem);
  bool remove(const std::vector<int>& places, QString& problem);
  // Moves factors, which keep their order, in front of the one at `before`.
  bool move(const std::vector<int>& places, int before, QString& problem);
  // The change of default truncations that has just been made, and truncations of factors.
  bool setTruncations(const std::vector<int>& places, double left, double right, QString& problem);
  // Another list, and the default truncations as they now are: of a file, of a panel. Nothing is asked.
  void take(const QString& name, FactorList list);

 private:
  struct State {
    std::shared_ptr<const FactorList> list;
    DefaultTruncations defaults = {};
  };
  using Operation = std::function<bool(FactorList&, QString&)>;
  enum class Order { Kept, Changed };
  bool change(const QString& name, const Operation& operation, QString& problem, Order order = Order::Kept);
  void enter(const QString& name, const State& after);
  void set(const State& state);

  State state_;
  DefaultTruncations start_;
  std::shared_ptr<const FactorList> saved_;
  Asks asks_;
  UndoStack undo_;
};

}  // namespace tarvex
