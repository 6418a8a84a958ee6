#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "model/EquationTrial.h"
#include "toolkit/Panel.h"

class QPlainTextEdit;

namespace tarvex {

class InternalModel;

// One equation as it is edited.
struct EquationDraft {
  std::string name = {};
  std::string text = {};
  std::int16_t type = 1;  // 1 output of the model, 0 internal
};

// The editor of one equation: a name and a text, judged while they are typed, and the value that they give in one run.
class PNewExpression : public Panel {
 public:
  // Takes the draft over into the model; on false `problem` has the model's own text, and the panel stays.
  using Accept = std::function<bool(const EquationDraft& draft, QString& problem)>;

  // What is to be edited.
  struct Task {
    const InternalModel& model;       // read by the constructor alone
    std::size_t position;             // of the equation, the number of equations for a new one
    std::vector<double> inputs = {};  // of the run that it is tried in
    std::string run = {};             // its title; empty: there is none
    Accept accept = {};
  };
  PNewExpression(const Display& display, const Task& task, QWidget* parent);

 private:
  QPlainTextEdit* field();
  EquationDraft draft();
  void show(const EquationDraft& equation);
  void fillNames();
  void add();
  void refuse(const QString& text, QWidget* where);
  void edited();
  void judge();
  void showValue(const EquationTrial& trial);
  void insert(const QString& text, int caretBack = 0);
  void insertLabel();
  void insertItem(const char* list);
  void selFunction();
  QString nameProblem(const std::string& name) const;

  Accept accept_;
  std::vector<std::string> bound_;  // names that the equation can use
  std::vector<std::string> known_;  // of all equations
  std::vector<double> values_;      // of the names it can use, nan where unknown
  std::string run_;
  std::string former_;      // name of the equation, empty for a new one
  std::string users_;       // that use it
  std::size_t inputs_ = 0;  // of bound_
  QString shown_;           // judged last
};

}  // namespace tarvex
